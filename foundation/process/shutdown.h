// Ending the session or the machine: promised surface, which the extension itself does not call.
#pragma once

#include <cstdint>

namespace owlkit {

enum class ShutdownMode : std::uint32_t {
    LogOff = 1,
    PowerOff = 2,
    Restart = 3,
};

// ExitWindowsEx under the privilege "SeShutdownPrivilege", which is enabled first. With `force`, applications
// that do not answer are ended; those that answer may still refuse. False for any other mode, when the
// privilege cannot be had, and when the system refuses.
[[nodiscard]] bool shutdownSystem(ShutdownMode mode, bool force);

}  // namespace owlkit
