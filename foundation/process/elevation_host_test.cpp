#include "foundation/process/elevation.h"

#include <gtest/gtest.h>

#include "platform/host/fault.h"
#include "platform/host/process_host.h"

namespace owlkit {
namespace {

TEST(Elevation, IsReadFromTheToken) {
    const struct Case {
        const char* name;
        std::uint32_t type, length;
        const char* fault;
        ElevationState state;
    } cases[] = {
        {"default", 1, 4, "", ElevationState::Unknown},
        {"full", 2, 4, "", ElevationState::Full},
        {"limited", 3, 4, "", ElevationState::Limited},
        {"unknown type", 4, 4, "", ElevationState::Unknown},
        {"too short", 2, 3, "", ElevationState::Unknown},
        {"too long", 2, 8, "", ElevationState::Unknown},
        {"no token", 2, 4, "OpenProcessToken", ElevationState::Unknown},
        {"no answer", 2, 4, "GetTokenInformation", ElevationState::Unknown},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        platform::host::tokenRecord() = {.elevationType = c.type, .returnedLength = c.length};
        platform::fault::arm(c.fault, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(queryElevation(), c.state);
        platform::fault::disarm();
        EXPECT_EQ(platform::host::openHandleCount(), 0u);
        const bool reached = std::string_view(c.fault) != "OpenProcessToken";
        EXPECT_EQ(platform::host::tokenRecord().opened,
                  std::vector<std::uint32_t>(reached ? 1 : 0, platform::kTokenQuery));
    }
}

TEST(Elevation, IsCachedUntilForgotten) {
    forgetElevation();
    platform::host::tokenRecord() = {.elevationType = platform::kElevationTypeDefault};
    EXPECT_EQ(cachedElevation(), ElevationState::Unknown);
    platform::host::tokenRecord().elevationType = platform::kElevationTypeFull;
    EXPECT_EQ(cachedElevation(), ElevationState::Unknown);
    forgetElevation();
    EXPECT_EQ(cachedElevation(), ElevationState::Full);
}

}  // namespace
}  // namespace owlkit
