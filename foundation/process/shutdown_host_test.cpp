#include "foundation/process/shutdown.h"

#include "testing/host.h"

namespace owlkit {
namespace {

using namespace test;
using Shutdown = HostTest;

TEST_F(Shutdown, AsksForTheModeUnderItsPrivilege) {
    const struct Case {
        std::uint32_t mode;
        bool force;
        std::uint32_t flags;
    } cases[] = {{1, false, 0}, {2, false, 8}, {3, false, 2}, {1, true, 16}, {2, true, 24}, {3, true, 18}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flags);
        host::TokenRecord& record = host::tokenRecord() = {};
        EXPECT_TRUE(shutdownSystem(ShutdownMode{c.mode}, c.force));
        EXPECT_EQ(record.opened, std::vector<std::uint32_t>{40});
        ASSERT_EQ(record.adjusted.size(), 1u);
        ASSERT_EQ(record.exits.size(), 1u);
        EXPECT_EQ(record.adjusted[0].attributes, 2u);
        EXPECT_EQ(record.exits[0].flags, c.flags);
        EXPECT_EQ(record.exits[0].reason, 0u);
    }
    fault::resetCounts();
    for (const std::uint32_t mode : {0u, 4u, 0xFFFFFFFFu})
        EXPECT_FALSE(shutdownSystem(ShutdownMode{mode}, true));
    EXPECT_EQ(fault::calls("*"), 0u) << "for another mode";
}

TEST_F(Shutdown, StopsAtEveryFailingCall) {
    walkFaults("*", platform::kErrorNotAllAssigned, [] {
        host::tokenRecord() = {};
        const bool done = shutdownSystem(ShutdownMode::PowerOff, true);
        EXPECT_EQ(host::openHandleCount(), 0u);
        EXPECT_EQ(done, !fault::fired());
        EXPECT_EQ(host::tokenRecord().exits.size(), done ? 1u : 0u);
    });
}

}  // namespace
}  // namespace owlkit
