#include "contextmenu/dispatch.h"

#include "contextmenu/commands.h"
#include "platform/file.h"
#include "tests/host_fixture.h"

namespace nmshell {
namespace {

using namespace std::string_literals;

class DispatchTest : public HostTest {
  protected:
    DispatchTest() { launcher_.setModuleFolder(u"C:\\App\\"); }

    std::uint32_t counter_ = 0;
    ApplicationLauncher launcher_{counter_};
    Selection selection_{SelectionKind::Drives, 1, u"D:\\\0"s};
    int window_ = 0;
};

TEST_F(DispatchTest, DoesWhatEachEntryStandsFor) {
    const std::u16string host = u"" NMSHELL_WEB_HOST;
    const std::u16string cursor = u"-cent ZAAAAMgAAAA=";
    const std::u16string data = u" -data RAA6AFwAAAA=";
    const struct {
        std::u16string verb;
        std::u16string parameters;  // or the address of a page
    } kCases[kCommandCount] = {
        {u"open", u"-cmd 101 " + cursor + data}, {u"runas", u"-cmd 102 " + cursor + data},
        {u"open", u"-cmd 104 " + cursor + data}, {u"open", u"-cmd 105 " + cursor + data},
        {u"open", u"-cmd 105 " + cursor},        {u"runas", u"-cmd 105 " + cursor + data},
        {u"runas", u"-cmd 105 " + cursor},       {u"open", cursor},
        {u"open", u"-cmd 106 " + cursor},        {u"open", u"-cmd 107 " + cursor},
        {u"", host + u"/user_guide.html"},       {u"", host + u"/updates/nmark_403.html"},
        {u"", host + u"/upgrade.html"},          {u"open", u"-cmd 108 " + cursor},
        {u"open", u"-cmd 109 " + cursor},
    };
    for (const std::int64_t result : {42, 5}) {  // whether the start succeeds is not reported
        platform::setShellExecuteResult(result);
        for (std::uint32_t offset = 0; offset < kCommandCount; ++offset) {
            SCOPED_TRACE(offset);
            const auto& c = kCases[offset];
            const bool page = c.verb.empty();
            platform::shellStarts().clear();
            EXPECT_TRUE(dispatch(offset, &window_, selection_, launcher_));
            ASSERT_EQ(platform::shellStarts().size(), 1u);
            const platform::ShellStart& start = platform::shellStarts()[0];
            EXPECT_EQ(start.extended, page);
            EXPECT_EQ(start.verb, page ? u"open" : c.verb);
            EXPECT_EQ(start.file, page ? c.parameters : u"C:\\App\\nmark.exe");
            EXPECT_EQ(start.parameters, page ? u"" : c.parameters);
            EXPECT_EQ(start.owner, page ? nullptr : &window_);
            EXPECT_EQ(start.show, 1);
        }
    }
}

TEST_F(DispatchTest, RefusesOtherOffsets) {
    for (const std::uint32_t offset : {15u, 0xFFFFu, 0xFFFFFFFFu})
        EXPECT_FALSE(dispatch(offset, nullptr, selection_, launcher_));
    EXPECT_TRUE(platform::shellStarts().empty());
}

TEST_F(DispatchTest, GoesWithoutACursor) {
    fault::arm("GetCursorPos", 1, platform::kErrorAccessDenied, true);
    EXPECT_TRUE(dispatch(kStandalone, nullptr, selection_, launcher_));
    EXPECT_TRUE(dispatch(kAdminTrashAll, nullptr, selection_, launcher_));
    EXPECT_EQ(platform::shellStarts().at(0).parameters, u"");
    EXPECT_EQ(platform::shellStarts().at(1).parameters, u"-cmd 105");
}

TEST_F(DispatchTest, ElevatesForAVolumeThatIsClosed) {
    makeFile("\\\\.\\D:", "volume");
    const struct {
        const char* name;
        std::u16string paths;
        const char* fault;
        bool closed;
    } kCases[] = {
        {"open", u"D:\\\0"s, "", false},
        {"the first path counts", u"d:\\x\0E:\\\0"s, "", false},
        {"not there", u"E:\\\0D:\\\0"s, "", true},
        {"denied", u"D:\\\0"s, "CreateFileW", true},
        {"no length", u"D:\\\0"s, "DeviceIoControl", true},
        {"no drive", u"\\\\server\\share\0D:\\\0"s, "", true},
        {"nothing read", u"", "", true},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        selection_.paths = c.paths;
        fault::arm(c.fault, 1, platform::kErrorAccessDenied);
        EXPECT_TRUE(dispatch(kWipeDrive, nullptr, selection_, launcher_));
        EXPECT_EQ(platform::shellStarts().back().verb, c.closed ? u"runas" : u"open");
        EXPECT_EQ(platform::openFileCount(), 0);
    }
    EXPECT_FALSE(volumeIsClosed(u"D:\\"));
    const platform::CreateFileArguments& asked = platform::lastCreateFile();
    EXPECT_EQ(asked.path, u"\\\\.\\D:");
    EXPECT_EQ(asked.access, platform::kGenericRead);
    EXPECT_EQ(asked.share, platform::kFileShareRead | platform::kFileShareWrite);
    EXPECT_EQ(asked.creation, platform::kOpenExisting);
    EXPECT_EQ(asked.attributes, 0u);
}

TEST(Version, IsItsFirstThreeNumbers) {
    const struct {
        const char16_t* text;
        const char16_t* identifier;
    } kCases[] = {{u"4.0.3", u"403"}, {u"4.0.3.77", u"403"}, {u"10.02", u"102"}, {u"7", u"7"},
                  {u"", u""},         {u"1.x.2", u"102"}};
    for (const auto& c : kCases)
        EXPECT_EQ(versionIdentifier(c.text), c.identifier);
}

}  // namespace
}  // namespace nmshell
