#include "contextmenu/dispatch.h"

#include "contextmenu/commands.h"
#include "foundation/process/folders.h"
#include "platform/file.h"
#include "testing/handover_in_memory.h"
#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;

using namespace std::string_literals;

class DispatchTest : public HostTest {
  protected:
    DispatchTest() { launcher_.setModuleFolder(u"C:\\App\\"); }

    HandoverInMemory files_;
    ApplicationLauncher launcher_{files_};
    Selection selection_{SelectionKind::Drives, 1, {u"D:\\"}};
};

TEST_F(DispatchTest, DoesWhatEachEntryStandsFor) {
    const std::u16string cursor = u"-cent ZAAAAMgAAAA=", data = u" -data RAA6AFwAAAA=";
    const std::u16string site = u"open|" NMSHELL_WEB_HOST;
    const std::u16string open = u"open|C:\\App\\nmark.exe|", runas = u"runas|C:\\App\\nmark.exe|";
    const std::u16string kStarts[kCommandCount] = {
        open + u"-cmd 101 " + cursor + data,
        runas + u"-cmd 102 " + cursor + data,
        open + u"-cmd 104 " + cursor + data,
        open + u"-cmd 105 " + cursor + data,
        open + u"-cmd 105 " + cursor,
        runas + u"-cmd 105 " + cursor + data,
        runas + u"-cmd 105 " + cursor,
        open + cursor,
        open + u"-cmd 106 " + cursor,
        open + u"-cmd 107 " + cursor,
        site + u"/user_guide.html|",
        site + u"/updates/nmark_403.html|",
        site + u"/upgrade.html|",
        open + u"-cmd 108 " + cursor,
        open + u"-cmd 109 " + cursor,
    };
    const auto window = reinterpret_cast<platform::WindowRef>(this);
    for (std::uint32_t offset = 0; offset < kCommandCount; ++offset) {
        host::setShellExecuteResult(offset % 2 * 42);  // success is not reported
        EXPECT_TRUE(dispatch(offset, window, selection_, launcher_));
        ASSERT_EQ(host::shellStarts().size(), offset + 1);
        EXPECT_EQ(lastStart(), kStarts[offset]);
        EXPECT_EQ(host::shellStarts().back().owner, kStarts[offset].starts_with(site) ? nullptr : window);
    }
    for (const std::uint32_t offset : {15u, 0xFFFFu, 0xFFFFFFFFu}) {
        EXPECT_FALSE(dispatch(offset, window, selection_, launcher_));
        EXPECT_EQ(host::shellStarts().size(), 15u);
    }
    fault::arm("GetCursorPos", 1, platform::kErrorAccessDenied);
    EXPECT_TRUE(dispatch(kAdminTrashAll, nullptr, selection_, launcher_));
    EXPECT_EQ(lastStart(), runas + u"-cmd 105");
    launcher_.setModuleFolder(u"");
    for (const std::int64_t result : {33, 32}) {
        owlkit::recordApplicationFolder(result == 33 ? folder() : u"/");  // asked for once
        host::setShellExecuteResult(result);
        EXPECT_EQ(launcher_.launch(nullptr, u"a.exe", 0, false, {}), result > 32);
        EXPECT_EQ(lastStart(), u"open|" + folder() + u"a.exe|");
    }
}

// A bare name would be looked for wherever the system looks, and with administrator rights too.
TEST_F(DispatchTest, StartsNothingWithoutAKnownFolder) {
    launcher_.setModuleFolder(u"");
    owlkit::recordApplicationFolder(folder() + u"gone");
    selection_ = {SelectionKind::Files, 1, {std::u16string(600, u'p')}};
    for (const std::uint32_t offset : {kWipeFiles, kAdminTrashDrive})
        EXPECT_TRUE(dispatch(offset, nullptr, selection_, launcher_));  // what fails to start is not reported
    EXPECT_TRUE(host::shellStarts().empty());
    EXPECT_EQ(files_.made, 0u);
}

TEST_F(DispatchTest, ElevatesForAVolumeThatIsClosed) {
    makeFile("\\\\.\\D:", "volume");
    makeFile("\\\\.\\A:", "the first drive");
    const std::tuple<owlkit::PathList, const char*, const char16_t*> kCases[] = {
        {{u"d:\\x", u"E:\\"}, "none", u"open"},
        {{u"E:\\", u"D:\\"}, "none", u"runas"},
        {{u"D:\\"}, "CreateFileW", u"runas"},
        {{u"D:\\"}, "DeviceIoControl", u"runas"},
        {{u"\\\\server\\share", u"D:\\"}, "none", u"runas"},
        {{}, "none", u"runas"},
        {{u"A:\\"}, "none", u"open"},
        {{u"D:\\"}, "none", u"open"},
    };
    for (const auto& [paths, operation, verb] : kCases) {
        selection_.paths = paths;
        fault::arm(operation, 1, platform::kErrorAccessDenied);
        EXPECT_TRUE(dispatch(kWipeDrive, nullptr, selection_, launcher_));
        EXPECT_EQ(host::shellStarts().back().verb, verb) << testing::PrintToString(paths.text()) << operation;
    }
    const host::CreateFileArguments& asked = host::lastCreateFile();
    EXPECT_TRUE(asked.path == u"\\\\.\\D:");
    EXPECT_TRUE(asked.access == platform::kGenericRead);
    EXPECT_TRUE(asked.share == 3);
    EXPECT_TRUE(asked.creation == platform::kOpenExisting);
    EXPECT_TRUE(asked.attributes == 0);
}

}  // namespace
}  // namespace nmshell
