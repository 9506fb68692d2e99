// Privileges, and ending the session.
#include "platform/process.h"

#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kTokenAdjustPrivileges == TOKEN_ADJUST_PRIVILEGES);
static_assert(kPrivilegeEnabled == SE_PRIVILEGE_ENABLED);
static_assert(kExitLogOff == EWX_LOGOFF);
static_assert(kExitReboot == EWX_REBOOT);
static_assert(kExitPowerOff == EWX_POWEROFF);
static_assert(kExitForceIfHung == EWX_FORCEIFHUNG);

Status lookupPrivilege(const char16_t* name, std::uint64_t& privilege) {
    LUID luid = {};
    if (!LookupPrivilegeValueW(nullptr, wide(name), &luid))
        return lastError();
    privilege = static_cast<std::uint64_t>(static_cast<std::uint32_t>(luid.HighPart)) << 32 | luid.LowPart;
    return kSuccess;
}

Status adjustTokenPrivilege(const TokenHandle& token, std::uint64_t privilege, std::uint32_t attributes) {
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Luid.LowPart = static_cast<DWORD>(privilege);
    privileges.Privileges[0].Luid.HighPart = static_cast<LONG>(privilege >> 32);
    privileges.Privileges[0].Attributes = attributes;
    SetLastError(ERROR_SUCCESS);
    if (!AdjustTokenPrivileges(token.get(), FALSE, &privileges, 0, nullptr, nullptr))
        return lastError();
    return Status{GetLastError()};  // it succeeds, with a code, where the token lacks the privilege
}

Status exitWindows(std::uint32_t flags, std::uint32_t reason) {
    return outcome(ExitWindowsEx(flags, reason));
}

}  // namespace platform
