// Whether this process runs elevated.
#pragma once

#include <cstdint>

namespace owlkit {

enum class ElevationState : std::uint32_t {
    Unknown = 0,  // the token is not split in two, or it could not be asked
    Limited = 1,  // the filtered token of an administrator
    Full = 2,     // elevated
};

// Asks the token of the current process (TokenElevationType).
ElevationState queryElevation();

// The same, asked on first use only and then kept for the life of the process.
ElevationState cachedElevation();

// Makes cachedElevation() ask again.
void forgetElevation();

}  // namespace owlkit
