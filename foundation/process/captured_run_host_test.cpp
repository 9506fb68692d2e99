#include "foundation/process/captured_run.h"
#include "testing/echo_child.h"
#include "testing/host.h"

namespace owlkit {
namespace {

using namespace test;
using RunCapturedOnHost = HostTest;

std::ptrdiff_t openDescriptors() {
    using Iterator = std::filesystem::directory_iterator;
    return std::distance(Iterator("/proc/self/fd"), Iterator());
}

TEST_F(RunCapturedOnHost, BuildsTheCommandLine) {
    const std::u16string blank = folder() + u"echo child";
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
        EXPECT_EQ(start.creationFlags, 0u);
    }
}

TEST_F(RunCapturedOnHost, SurvivesEveryFailingCall) {
    const std::ptrdiff_t descriptors = openDescriptors();
    const auto run = [&](const char16_t* arguments, std::string& output) {
        const std::uint32_t result = runCaptured(echoChild(), arguments, output);
        EXPECT_EQ(host::openHandleCount(), 0u);
        EXPECT_EQ(openDescriptors(), descriptors);
        return result;
    };
    failEach(
        {"GetFileAttributesW", "CreatePipe", "SetHandleInformation", "CreateProcessW", "WaitForSingleObject"},
        platform::kErrorAccessDenied, [&] {
            std::string output = "before";
            EXPECT_EQ(run(u"print x", output), 1u);
            EXPECT_EQ(output, "before");
        });
    walkFaults("*", platform::kErrorBrokenPipe, [&] {
        std::string output = "before";
        const std::uint32_t result = run(u"bytes 5000", output);
        EXPECT_EQ(output, result == 1 ? "before" : echoChildLetters(fault::fired() ? output.size() : 5000));
    });
}

}  // namespace
}  // namespace owlkit
