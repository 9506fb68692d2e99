#include "foundation/process/elevation.h"

#include <atomic>

#include "platform/process.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kNotAsked = 0xFFFFFFFF;
std::atomic<std::uint32_t> cachedState = kNotAsked;  // two threads that ask at once get the same answer

}  // namespace

std::uint32_t queryElevation() {
    const platform::TokenHandle token = platform::openProcessToken(platform::kTokenQuery);
    std::uint32_t type = 0;
    std::uint32_t length = 0;
    if (!token || !platform::tokenElevationType(token, type, length) || length != sizeof(type))
        return kElevationUnknown;
    if (type == platform::kElevationTypeFull)
        return kElevationFull;
    return type == platform::kElevationTypeLimited ? kElevationLimited : kElevationUnknown;
}

std::uint32_t cachedElevation() {
    if (cachedState == kNotAsked)
        cachedState = queryElevation();
    return cachedState;
}

void forgetElevation() {
    cachedState = kNotAsked;
}

}  // namespace owlkit
