#include "platform/process.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

// Each line is an answer of the system's that the stand-in gives too.
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
    const std::u16string missing = u"no such program";
    EXPECT_EQ(tokenElevationType(reader, type, length), kSuccess);
    EXPECT_EQ(tokenElevationType(adjuster, type, length), kErrorAccessDenied);
    EXPECT_EQ(tokenElevationType(TokenHandle(), type, length), kErrorInvalidHandle);
    EXPECT_EQ(lookupPrivilege(u"SeNothing", privilege), kErrorNoSuchPrivilege);
    EXPECT_EQ(lookupPrivilege(u"SeShutdownPrivilege", privilege), kSuccess);
    EXPECT_EQ(privilege, 19u);
    EXPECT_EQ(adjustTokenPrivilege(reader, 19, kPrivilegeEnabled), kErrorAccessDenied);
    EXPECT_EQ(adjustTokenPrivilege(TokenHandle(), 19, kPrivilegeEnabled), kErrorInvalidHandle);
    EXPECT_EQ(setHandleInformation(PipeHandle(), kHandleFlagInherit, 0), kErrorInvalidHandle);
    EXPECT_EQ(peekPipe(PipeHandle(), &byte, 1, count, length), kErrorInvalidHandle);
    EXPECT_EQ(readPipe(PipeHandle(), &byte, 1, count), kErrorInvalidHandle);
    EXPECT_EQ(exitCodeProcess(ProcessHandle(), count), kErrorInvalidHandle);
    EXPECT_EQ(createProcess(missing, missing, false, 0, PipeHandle(), process, thread), kErrorFileNotFound);
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
