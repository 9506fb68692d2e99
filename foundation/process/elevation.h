// Whether this process runs elevated.
#pragma once

#include <cstdint>

namespace owlkit {

enum ElevationState : std::uint32_t {
    kElevationUnknown = 0,  // the token is not split in two, or it could not be asked
    kElevationLimited = 1,  // the filtered token of an administrator
    kElevationFull = 2,     // elevated
};

// Asks the token of the current process (TokenElevationType); an ElevationState.
std::uint32_t queryElevation();

// The same, asked on first use only and then kept for the life of the process.
std::uint32_t cachedElevation();

// Makes cachedElevation() ask again.
void forgetElevation();

}  // namespace owlkit
