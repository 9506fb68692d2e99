#include "platform/process.h"

#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kTokenQuery == TOKEN_QUERY);
static_assert(kElevationTypeDefault == TokenElevationTypeDefault);
static_assert(kElevationTypeFull == TokenElevationTypeFull);
static_assert(kElevationTypeLimited == TokenElevationTypeLimited);

void ProcessTraits::close(Type process) noexcept {
    CloseHandle(process);
}

void TokenTraits::close(Type token) noexcept {
    CloseHandle(token);
}

TokenHandle openProcessToken(std::uint32_t access) {
    HANDLE token = nullptr;
    return TokenHandle(OpenProcessToken(GetCurrentProcess(), access, &token) ? token : nullptr);
}

Status tokenElevationType(const TokenHandle& token, std::uint32_t& type, std::uint32_t& returnedLength) {
    static_assert(sizeof(TOKEN_ELEVATION_TYPE) == sizeof(type));
    DWORD length = 0;
    const Status status =
        outcome(GetTokenInformation(token.get(), TokenElevationType, &type, sizeof(type), &length));
    returnedLength = length;
    return status;
}

std::optional<std::u16string> environmentVariable(const char16_t* name) {
    std::u16string value(256, u'\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD size = static_cast<DWORD>(value.size());
        const DWORD length = GetEnvironmentVariableW(wide(name), wide(value.data()), size);
        if (length == 0 && GetLastError() != ERROR_SUCCESS)  // a variable may well be empty
            return std::nullopt;
        value.resize(length);
        if (length < size)
            return value;
    }
}

}  // namespace platform
