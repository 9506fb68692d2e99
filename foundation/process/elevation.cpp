#include "foundation/process/elevation.h"

#include <atomic>

#include "platform/process.h"

namespace owlkit {
namespace {

constexpr ElevationState kNotAsked{0xFFFFFFFF};
std::atomic<ElevationState> cachedState = kNotAsked;  // two threads that ask at once get the same answer

}  // namespace

ElevationState queryElevation() {
    const platform::TokenHandle token = platform::openProcessToken(platform::kTokenQuery);
    std::uint32_t type = 0;
    std::uint32_t length = 0;
    if (!token || !platform::tokenElevationType(token, type, length).succeeded() || length != sizeof(type))
        return ElevationState::Unknown;
    if (type == platform::kElevationTypeFull)
        return ElevationState::Full;
    return type == platform::kElevationTypeLimited ? ElevationState::Limited : ElevationState::Unknown;
}

ElevationState cachedElevation() {
    if (cachedState == kNotAsked)
        cachedState = queryElevation();
    return cachedState;
}

void forgetElevation() {
    cachedState = kNotAsked;
}

}  // namespace owlkit
