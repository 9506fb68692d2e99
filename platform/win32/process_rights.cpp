// Privileges, and ending the session.
#include "platform/process.h"

#include "platform/win32/win32_api.h"

namespace platform {

bool lookupPrivilege(const char16_t* name, std::uint64_t& privilege) {
    LUID luid = {};
    if (!LookupPrivilegeValueW(nullptr, wide(name), &luid))
        return false;
    privilege = static_cast<std::uint64_t>(static_cast<std::uint32_t>(luid.HighPart)) << 32 | luid.LowPart;
    return true;
}

ErrorCode adjustTokenPrivilege(const TokenHandle& token, std::uint64_t privilege, std::uint32_t attributes) {
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Luid.LowPart = static_cast<DWORD>(privilege);
    privileges.Privileges[0].Luid.HighPart = static_cast<LONG>(privilege >> 32);
    privileges.Privileges[0].Attributes = attributes;
    SetLastError(ERROR_SUCCESS);
    if (!AdjustTokenPrivileges(token.get(), FALSE, &privileges, 0, nullptr, nullptr))
        return lastError();
    return GetLastError();  // it succeeds, with a code, where the token lacks the privilege
}

bool exitWindows(std::uint32_t flags, std::uint32_t reason) {
    return ExitWindowsEx(flags, reason) != FALSE;
}

}  // namespace platform
