#include "platform/process.h"

#include <gtest/gtest.h>

#include <functional>

namespace platform {
namespace {

// Each row is an answer of the system's that the stand-in gives too.
TEST(ProcessContract, AnswersWithTheSystemsCodes) {
    const TokenHandle reader = openProcessToken(kTokenQuery);
    const TokenHandle adjuster = openProcessToken(kTokenAdjustPrivileges);
    ASSERT_TRUE(reader);
    ASSERT_TRUE(adjuster);
    std::uint64_t privilege = 0;
    std::uint32_t type = 0, length = 0, count = 0;
    char byte = 0;
    ProcessHandle process;
    ThreadHandle thread;
    const struct Case {
        const char* name;
        Status expected;
        std::function<Status()> call;
    } cases[] = {
        {"elevation", kSuccess, [&] { return tokenElevationType(reader, type, length); }},
        {"elevation without the right", kErrorAccessDenied,
         [&] { return tokenElevationType(adjuster, type, length); }},
        {"elevation of nothing", kErrorInvalidHandle,
         [&] { return tokenElevationType(TokenHandle(), type, length); }},
        {"a privilege", kSuccess, [&] { return lookupPrivilege(u"SeShutdownPrivilege", privilege); }},
        {"no privilege", kErrorNoSuchPrivilege, [&] { return lookupPrivilege(u"SeNothing", privilege); }},
        {"adjust without the right", kErrorAccessDenied,
         [&] { return adjustTokenPrivilege(reader, 19, kPrivilegeEnabled); }},
        {"adjust nothing", kErrorInvalidHandle,
         [&] { return adjustTokenPrivilege(TokenHandle(), 19, kPrivilegeEnabled); }},
        {"inherit nothing", kErrorInvalidHandle,
         [&] { return setHandleInformation(PipeHandle(), kHandleFlagInherit, 0); }},
        {"peek at nothing", kErrorInvalidHandle,
         [&] { return peekPipe(PipeHandle(), &byte, 1, count, length); }},
        {"read nothing", kErrorInvalidHandle, [&] { return readPipe(PipeHandle(), &byte, 1, count); }},
        {"exit code of nothing", kErrorInvalidHandle,
         [&] { return exitCodeProcess(ProcessHandle(), count); }},
        {"no program", kErrorFileNotFound,
         [&] {
             return createProcess(u"no such program", u"no such program", false, 0, PipeHandle(), process,
                                  thread);
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.call().code, c.expected.code);
    }
    EXPECT_EQ(privilege, 19u);
    EXPECT_FALSE(process);
    EXPECT_FALSE(thread);
    EXPECT_EQ(waitForProcess(process, 0), kWaitFailed);
    EXPECT_EQ(environmentVariable(u"NMSHELL_NONE"), std::nullopt);
    EXPECT_FALSE(environmentVariable(u"PATH").value_or(u"").empty());
}

TEST(ProcessContract, APipeIsEmptyAndThenBroken) {
    PipeHandle readEnd, writeEnd;
    ASSERT_EQ(createPipe(readEnd, writeEnd, false), kSuccess);
    char byte = 0;
    std::uint32_t count = 9, available = 9;
    EXPECT_EQ(peekPipe(readEnd, &byte, 1, count, available), kSuccess);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(available, 0u);
    EXPECT_EQ(setHandleInformation(readEnd, kHandleFlagInherit, kHandleFlagInherit), kSuccess);
    writeEnd.reset();
    EXPECT_EQ(peekPipe(readEnd, &byte, 1, count, available).code, kErrorBrokenPipe.code);
    EXPECT_EQ(readPipe(readEnd, &byte, 1, count).code, kErrorBrokenPipe.code);
}

}  // namespace
}  // namespace platform
