#include "foundation/process/shutdown.h"

#include <optional>

#include "platform/process.h"

namespace owlkit {
namespace {

// Nothing for a mode that is none of ours.
std::optional<std::uint32_t> exitFlags(ShutdownMode mode) {
    switch (mode) {
        case ShutdownMode::LogOff:
            return platform::kExitLogOff;
        case ShutdownMode::PowerOff:
            return platform::kExitPowerOff;
        case ShutdownMode::Restart:
            return platform::kExitReboot;
    }
    return std::nullopt;
}

bool enableShutdownPrivilege() {
    const platform::TokenHandle token =
        platform::openProcessToken(platform::kTokenAdjustPrivileges | platform::kTokenQuery);
    std::uint64_t privilege = 0;
    return token && platform::lookupPrivilege(u"SeShutdownPrivilege", privilege).succeeded() &&
           platform::adjustTokenPrivilege(token, privilege, platform::kPrivilegeEnabled).succeeded();
}

}  // namespace

bool shutdownSystem(ShutdownMode mode, bool force) {
    const std::optional<std::uint32_t> flags = exitFlags(mode);
    return flags && enableShutdownPrivilege() &&
           platform::exitWindows(*flags | (force ? platform::kExitForceIfHung : 0), 0).succeeded();
}

}  // namespace owlkit
