#include "foundation/process/captured_run.h"

#include <gtest/gtest.h>

#include <fstream>

#include "testing/echo_child.h"
#include "testing/temporary.h"

namespace owlkit {
namespace {

using namespace test;

TEST(RunCaptured, GivesTheArgumentsAndTheOutput) {
    const struct Case {
        const char* name;
        const char16_t* arguments;
        const char* output;
    } cases[] = {
        {"words", u"print a bc", "[a][bc]"},
        {"blanks around the arguments", u" \t print x \r\n", "[x]"},
        {"a quoted argument", u"print \"a b\" c", "[a b][c]"},
        {"a failing program", u"exit 3", ""},
        {"no arguments", u"", ""},
    };
    // A program whose path has blanks in it gets the same arguments.
    const TemporaryFolder folder;
    const std::filesystem::path copy = folder / "echo child.exe";
    std::filesystem::copy_file(echoChild(), copy);
    for (const std::u16string& program : {echoChild(), copy.u16string()}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(c.name);
            std::string output = "before";
            EXPECT_EQ(runCaptured(program, c.arguments, output), 0u);
            EXPECT_EQ(output, c.output);
        }
    }
}

TEST(RunCaptured, ReadsOutputOfEverySizeAroundItsChunk) {
    for (const std::size_t size : {0u, 1u, 2047u, 2048u, 2049u, 4095u, 4096u}) {
        SCOPED_TRACE(size);
        std::string output;
        const std::string arguments = "bytes " + std::to_string(size);
        EXPECT_EQ(runCaptured(echoChild(), {arguments.begin(), arguments.end()}, output), 0u);
        EXPECT_EQ(output, echoChildLetters(size));
    }
}

TEST(RunCaptured, RefusesWhatIsNoProgramAndLeavesTheOutput) {
    const TemporaryFolder folder;
    std::ofstream(folder / "text.txt") << "no program";
    const std::filesystem::path kPrograms[] = {"", folder / "missing.exe", folder.path(),
                                               folder / "text.txt"};
    for (const std::filesystem::path& program : kPrograms) {
        SCOPED_TRACE(program.string());
        std::string output = "before";
        EXPECT_EQ(runCaptured(program.u16string(), u"print x", output), 1u);
        EXPECT_EQ(output, "before");
    }
}

}  // namespace
}  // namespace owlkit
