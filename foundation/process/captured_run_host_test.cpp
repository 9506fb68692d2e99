#include <gtest/gtest.h>

#include "foundation/process/captured_run.h"
#include "platform/host/fault.h"
#include "platform/host/process_host.h"
#include "testing/echo_child.h"
#include "testing/temporary.h"

namespace owlkit {
namespace {

using namespace test;
namespace host = platform::host;

std::ptrdiff_t openDescriptors() {
    using Iterator = std::filesystem::directory_iterator;
    return std::distance(Iterator("/proc/self/fd"), Iterator());
}

TEST(RunCapturedOnHost, BuildsTheCommandLine) {
    const TemporaryFolder folder;
    const std::u16string blank = (folder / "echo child").u16string();
    std::filesystem::copy_file(echoChild(), blank);
    const std::u16string kCases[][3] = {
        {echoChild(), u" print  x ", echoChild() + u" print  x"},
        {echoChild(), u"  ", echoChild() + u" "},
        {blank, u"", u"\"" + blank + u"\""},
    };
    for (const auto& [program, arguments, commandLine] : kCases) {
        std::string output;
        ASSERT_EQ(runCaptured(program, arguments, output), 0u);
        const host::ProcessStart& start = host::processStarts().back();
        EXPECT_EQ(start.program, program);
        EXPECT_EQ(start.commandLine, commandLine);
        EXPECT_TRUE(start.inheritHandles);
        EXPECT_TRUE(start.creationFlags == 0);
    }
}

TEST(RunCapturedOnHost, SurvivesEveryFailingCall) {
    const char* const kFailingWithOne[] = {"GetFileAttributesW", "CreatePipe", "SetHandleInformation",
                                           "CreateProcessW", "WaitForSingleObject"};
    for (const char* const call : kFailingWithOne) {
        SCOPED_TRACE(call);
        const std::ptrdiff_t descriptors = openDescriptors();
        std::string output = "before";
        platform::fault::arm(call, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(runCaptured(echoChild(), u"print x", output), 1u);
        EXPECT_TRUE(platform::fault::fired());
        EXPECT_EQ(output, "before");
        EXPECT_EQ(host::openHandleCount(), 0u);
        EXPECT_EQ(openDescriptors(), descriptors);
    }
    bool fired = true;
    for (std::uint32_t n = 1; fired; ++n) {
        SCOPED_TRACE(n);
        const std::ptrdiff_t descriptors = openDescriptors();
        std::string output = "before";
        platform::fault::arm("*", n, platform::kErrorBrokenPipe);
        const std::uint32_t result = runCaptured(echoChild(), u"bytes 5000", output);
        fired = platform::fault::fired();
        EXPECT_EQ(output, result == 1 ? "before" : echoChildLetters(fired ? output.size() : 5000));
        EXPECT_EQ(host::openHandleCount(), 0u);
        EXPECT_EQ(openDescriptors(), descriptors);
    }
    platform::fault::disarm();
}

}  // namespace
}  // namespace owlkit
