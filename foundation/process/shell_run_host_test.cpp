#include "foundation/process/shell_run.h"
#include "testing/echo_child.h"
#include "testing/host.h"

namespace owlkit {
namespace {

using namespace test;
using ShellRunOnHost = HostTest;

// The one start of `file`, or none.
void expectStart(bool started, const std::u16string& file, const std::u16string& parameters,
                 std::uint32_t mask) {
    ASSERT_EQ(host::shellStarts().size(), started ? 1u : 0u);
    for (const host::ShellStart& start : host::shellStarts()) {
        EXPECT_TRUE(start.extended);
        EXPECT_EQ(start.verb, u"open");
        EXPECT_EQ(start.file, file);
        EXPECT_EQ(start.parameters, parameters);
        EXPECT_EQ(start.show, 1);
        EXPECT_EQ(start.mask, mask);
    }
    host::shellStarts().clear();
}

TEST_F(ShellRunOnHost, StartsAndWaits) {
    const struct Case {
        const char* name;
        const char16_t* file;
        bool wait;
        std::int64_t executeResult;
        std::optional<std::uint32_t> exitCode;
        const char* fault;
        std::int32_t result;
    } cases[] = {
        {"no file", u"", true, 42, 7, "", -1},
        {"not waited for", u"a.exe", false, 42, 7, "", 0},
        {"waited for", u"a.exe", true, 42, 7, "", 7},
        {"a large exit code", u"a.exe", true, 42, 0xC0000005, "", -1073741819},
        {"no process", u"a.txt", true, 42, std::nullopt, "", 0},
        {"refused", u"a.exe", true, 32, 7, "", -1},
        {"failing start", u"a.exe", true, 42, 7, "ShellExecuteExW", -1},
        {"failing wait", u"a.exe", true, 42, 7, "WaitForSingleObject", 7},
        {"failing exit code", u"a.exe", true, 42, 7, "GetExitCodeProcess", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host::setShellExecuteResult(c.executeResult);
        host::setShellProcess(c.exitCode);
        fault::arm(c.fault, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(runShell(c.file, u"-x \"y z\"", c.wait), c.result);
        expectStart(*c.file != u'\0' && std::string_view(c.fault) != "ShellExecuteExW", c.file, u"-x \"y z\"",
                    c.wait ? 1344u : 1280u);
    }
    host::setShellExecuteResult(42);
    fault::disarm();
    host::startShellProgramsForReal(true);
    EXPECT_EQ(runShell(echoChild(), u"exit  7", true), 7);
    EXPECT_EQ(runShell(echoChild() + u".missing", u"", true), -1);
}

TEST_F(ShellRunOnHost, OpensWhatItsKindAllows) {
    const std::u16string path = std::filesystem::current_path().u16string();
    std::filesystem::create_directory("blank ");
    const struct Case {
        const char* name;
        std::uint32_t kind;
        std::u16string target;
        std::u16string started;  // empty: refused without a start
    } cases[] = {
        {"nothing", 1, u"", u""},
        {"an address", 1, u" web://no such place", u" web://no such place"},
        {"a folder", 1, path, u"file://" + path},
        {"a name that ends in a blank", 1, path + u"/blank ", u"file://" + path + u"/blank"},
        {"a missing file", 1, path + u".missing", u""},
        {"an address without slashes", 1, u"mailto:a@b", u""},
        {"a mail address", 2, u"\t a@b.c ", u"mailto:a@b.c"},
        {"a mail address with a scheme", 2, u"mailto:a@b.c", u"mailto:a@b.c"},
        {"any letter case, blanks", 2, u" MailTo :a@b.c ", u" MailTo :a@b.c "},
        {"an empty scheme", 2, u":a@b.c ", u"mailto::a@b.c"},
        {"a blank scheme", 2, u" :a@b.c", u""},
        {"another scheme", 2, u"web://a", u""},
        {"anything", 0, u" any:thing ", u" any:thing "},
        {"another kind", 3, path + u".missing", path + u".missing"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(openWithShell(OpenKind{c.kind}, c.target), !c.started.empty());
        expectStart(!c.started.empty(), c.started, u"", 1280u);
        host::setShellExecuteResult(5);
        EXPECT_FALSE(openWithShell(OpenKind{c.kind}, c.target));
        host::shellStarts().clear();
        host::setShellExecuteResult(42);
    }
}

}  // namespace
}  // namespace owlkit
