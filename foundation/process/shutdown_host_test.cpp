#include "foundation/process/shutdown.h"

#include <gtest/gtest.h>

#include "platform/host/fault.h"
#include "platform/host/process_host.h"

namespace owlkit {
namespace {

TEST(Shutdown, AsksForTheModeUnderItsPrivilege) {
    const struct Case {
        std::uint32_t mode;
        bool force;
        std::uint32_t flags;
    } cases[] = {{1, false, 0}, {2, false, 8}, {3, false, 2}, {1, true, 16}, {2, true, 24}, {3, true, 18}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flags);
        platform::host::TokenRecord& record = platform::host::tokenRecord() = {};
        EXPECT_TRUE(shutdownSystem(ShutdownMode{c.mode}, c.force));
        EXPECT_EQ(record.opened, std::vector<std::uint32_t>{40});
        ASSERT_TRUE(record.adjusted.size() == 1);
        ASSERT_TRUE(record.exits.size() == 1);
        EXPECT_EQ(record.adjusted[0].attributes, 2u);
        EXPECT_EQ(record.exits[0].flags, c.flags);
        EXPECT_EQ(record.exits[0].reason, 0u);
    }
}

TEST(Shutdown, TouchesNothingForAnotherMode) {
    platform::fault::resetCounts();
    for (const std::uint32_t mode : {0u, 4u, 0xFFFFFFFFu})
        EXPECT_FALSE(shutdownSystem(ShutdownMode{mode}, true));
    EXPECT_EQ(platform::fault::calls("*"), 0u);
}

TEST(Shutdown, StopsAtEveryFailingCall) {
    std::uint32_t failures = 0;
    for (;; ++failures) {
        platform::host::tokenRecord() = {};
        platform::fault::arm("*", failures + 1, platform::kErrorNotAllAssigned);
        const bool done = shutdownSystem(ShutdownMode::PowerOff, true);
        EXPECT_EQ(platform::host::openHandleCount(), 0u);
        EXPECT_EQ(done, !platform::fault::fired());
        EXPECT_EQ(platform::host::tokenRecord().exits.size(), done ? 1u : 0u);
        if (done)
            break;
    }
    platform::fault::disarm();
    EXPECT_GT(failures, 0u);
}

}  // namespace
}  // namespace owlkit
