#include "foundation/process/elevation.h"

#include "testing/host.h"

namespace owlkit {
namespace {

using namespace test;
using Elevation = HostTest;

TEST_F(Elevation, IsReadFromTheToken) {
    using enum ElevationState;
    const struct Case {
        const char* name;
        std::uint32_t type, length;
        ElevationState state;
        const char* fault = "";
    } cases[] = {
        {"default", 1, 4, Unknown},
        {"full", 2, 4, Full},
        {"limited", 3, 4, Limited},
        {"unknown type", 4, 4, Unknown},
        {"too short", 2, 3, Unknown},
        {"too long", 2, 8, Unknown},
        {"no token", 2, 4, Unknown, "OpenProcessToken"},
        {"no answer", 2, 4, Unknown, "GetTokenInformation"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host::tokenRecord() = {.elevationType = c.type, .returnedLength = c.length};
        fault::arm(c.fault, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(queryElevation(), c.state);
        const bool reached = std::string_view(c.fault) != "OpenProcessToken";
        EXPECT_EQ(host::tokenRecord().opened,
                  std::vector<std::uint32_t>(reached ? 1 : 0, platform::kTokenQuery));
    }
}

TEST_F(Elevation, IsCachedUntilForgotten) {
    host::tokenRecord() = {.elevationType = platform::kElevationTypeDefault};
    EXPECT_EQ(cachedElevation(), ElevationState::Unknown);
    host::tokenRecord().elevationType = platform::kElevationTypeFull;
    EXPECT_EQ(cachedElevation(), ElevationState::Unknown);
    forgetElevation();
    EXPECT_EQ(cachedElevation(), ElevationState::Full);
}

}  // namespace
}  // namespace owlkit
