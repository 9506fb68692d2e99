// Ending the session or the machine.
#pragma once

#include <cstdint>

namespace owlkit {

enum ShutdownMode : std::uint32_t {
    kLogOff = 1,
    kPowerOff = 2,
    kRestart = 3,
};

// ExitWindowsEx under the privilege "SeShutdownPrivilege", which is enabled first. With `force`, applications
// that do not answer are ended; those that answer may still refuse. False for any other mode, when the
// privilege cannot be had, and when the system refuses.
bool shutdownSystem(std::uint32_t mode, bool force);

}  // namespace owlkit
