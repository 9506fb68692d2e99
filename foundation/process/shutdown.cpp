#include "foundation/process/shutdown.h"

#include "platform/process.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kExitLogOff = 0;
constexpr std::uint32_t kExitReboot = 2;
constexpr std::uint32_t kExitPowerOff = 8;
constexpr std::uint32_t kExitForceIfHung = 16;

bool enableShutdownPrivilege() {
    const platform::TokenHandle token =
        platform::openProcessToken(platform::kTokenAdjustPrivileges | platform::kTokenQuery);
    std::uint64_t privilege = 0;
    return token && platform::lookupPrivilege(u"SeShutdownPrivilege", privilege) &&
           platform::adjustTokenPrivilege(token, privilege, platform::kPrivilegeEnabled) ==
               platform::kSuccess;
}

}  // namespace

bool shutdownSystem(std::uint32_t mode, bool force) {
    std::uint32_t flags = 0;
    switch (mode) {
        case kLogOff:
            flags = kExitLogOff;
            break;
        case kPowerOff:
            flags = kExitPowerOff;
            break;
        case kRestart:
            flags = kExitReboot;
            break;
        default:
            return false;
    }
    if (force)
        flags |= kExitForceIfHung;
    return enableShutdownPrivilege() && platform::exitWindows(flags, 0);
}

}  // namespace owlkit
