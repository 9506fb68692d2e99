#include "contextmenu/application_launcher.h"

#include "contextmenu/handover_file.h"
#include "tests/host_fixture.h"

namespace nmshell {
namespace {

class LauncherTest : public HostTest {
  protected:
    std::uint32_t counter_ = 0;
    ApplicationLauncher launcher_{counter_};
};

TEST_F(LauncherTest, StartsTheApplicationOfTheModuleFolder) {
    launcher_.setModuleFolder(u"C:\\Program Files\\Nullmark\\");
    int window = 0;
    const struct {
        bool elevate;
        std::int64_t result;
        const char16_t* verb;
    } kCases[] = {{false, 33, u"open"},
                  {true, 42, u"runas"},
                  {false, 32, u"open"},
                  {true, 5, u"runas"},
                  {true, 0, u"runas"}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.result);
        platform::setShellExecuteResult(c.result);
        EXPECT_EQ(launcher_.launch(&window, kApplication, 0x109, c.elevate, {}), c.result > 32);
        const platform::ShellStart& start = platform::shellStarts().back();
        EXPECT_FALSE(start.extended);
        EXPECT_EQ(start.verb, c.verb);
        EXPECT_EQ(start.file, u"C:\\Program Files\\Nullmark\\nmark.exe");
        EXPECT_EQ(start.parameters, u"-cmd 109");
        EXPECT_FALSE(start.hasFolder);
        EXPECT_EQ(start.show, 1);
        EXPECT_EQ(start.owner, &window);
    }
    fault::arm("ShellExecuteW", 1, platform::kErrorFileNotFound);
    EXPECT_FALSE(launcher_.launch(nullptr, kApplication, 0, false, {}));
}

TEST_F(LauncherTest, FallsBackToTheApplicationFolderOnce) {
    owlkit::recordApplicationFolder(folder());
    EXPECT_TRUE(launcher_.launch(nullptr, u"a.exe", 0, false, {}));
    owlkit::recordApplicationFolder(u"/");
    EXPECT_TRUE(launcher_.launch(nullptr, u"b.exe", 0, false, {}));
    EXPECT_EQ(platform::shellStarts().at(0).file, folder() + u"a.exe");
    EXPECT_EQ(platform::shellStarts().at(1).file, folder() + u"b.exe");
    EXPECT_EQ(platform::shellStarts().at(1).parameters, u"");
}

TEST_F(LauncherTest, HandsLongDataOverThroughAFile) {
    launcher_.setTempExtension(u".nmark");
    std::u16string escaped = folder();
    escaped.replace(escaped.find(u' '), 1, u"%20");
    LaunchRequest request{.command = 0x101, .data = std::u16string(512, u'd')};
    EXPECT_EQ(launcher_.buildArguments(0x101, request).find(u"-cmd 101 -data ZABkAG"), 0u);
    EXPECT_EQ(counter_, 0u);
    request.data += u'e';
    const std::u16string parameters = launcher_.buildArguments(0x101, request);
    EXPECT_EQ(parameters, u"-cmd 101 -tfn " + escaped + u"tfn_db710640.nmark");
    LaunchRequest back;
    parseArguments({u"-tfn", parameters.substr(14)}, back);
    EXPECT_EQ(back.data, request.data);
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST_F(LauncherTest, GoesAheadWithoutDataThatCannotBeWritten) {
    LaunchRequest request{.command = 0x101, .data = std::u16string(513, u'd')};
    const struct {
        const char* name;
        const char* operation;
        std::uint32_t command;
        std::u16string path;
        std::u16string parameters;
    } kCases[] = {
        {"cannot be created", "CreateFileW", 0x101, u"", u"-cmd 101 "},
        {"cannot be written", "WriteFile", 0x101, u"", u"-cmd 101 "},
        {"followed by a path", "CreateFileW", 0x101, u"a b", u"-cmd 101  -p a%20b"},
        {"nothing else", "CreateFileW", 0, u"", u""},
        {"only a path", "CreateFileW", 0, u"p", u"-p p"},
        {"no temporary folder", "GetTempPathW", 0x101, u"", u"-cmd 101 -tfn tfn_800b95e0.tmp"},
        {"temporary folder is none", "GetFileAttributesW", 0x101, u"", u"-cmd 101 -tfn tfn_6dc41900.tmp"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        request.path = c.path;
        fault::arm(c.operation, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(launcher_.buildArguments(c.command, request), c.parameters);
        EXPECT_TRUE(fault::fired());
        EXPECT_EQ(platform::openFileCount(), 0);
    }
}

}  // namespace
}  // namespace nmshell
