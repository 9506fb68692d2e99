#include "contextmenu/dispatch.h"

#include "contextmenu/commands.h"
#include "foundation/process/folders.h"
#include "platform/file.h"
#include "testing/handover_in_memory.h"
#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;

class DispatchTest : public HostTest {
  protected:
    DispatchTest() { launcher_.setModuleFolder(u"C:\\App\\"); }

    HandoverInMemory files_;
    ApplicationLauncher launcher_{files_};
    Selection selection_{SelectionKind::Drives, 1, {u"D:\\"}};
};

// What each entry starts stands in tests/life_walk/started.cpp.
TEST_F(DispatchTest, StartsOneThingForEachEntry) {
    const auto window = reinterpret_cast<platform::WindowRef>(this);
    for (std::uint32_t offset = 0; offset < kCommandCount; ++offset) {
        SCOPED_TRACE(offset);
        host::setShellExecuteResult(offset % 2 * 42);  // success is not reported
        EXPECT_TRUE(dispatch(offset, window, selection_, launcher_));
        ASSERT_EQ(host::shellStarts().size(), offset + 1);
        const bool isPage = offset >= kHelp && offset <= kRegister;
        EXPECT_EQ(host::shellStarts().back().owner, isPage ? nullptr : window);
    }
    for (const std::uint32_t offset : {15u, 0xFFFFu, 0xFFFFFFFFu}) {
        EXPECT_FALSE(dispatch(offset, window, selection_, launcher_));
        EXPECT_EQ(host::shellStarts().size(), 15u);
    }
    fault::arm("GetCursorPos", 1, platform::kErrorAccessDenied);
    EXPECT_TRUE(dispatch(kAdminTrashAll, nullptr, selection_, launcher_));
    EXPECT_EQ(lastStart(), u"runas|C:\\App\\nmark.exe|-cmd 105");
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
    EXPECT_EQ(asked.path, u"\\\\.\\D:");
    EXPECT_EQ(asked.access, platform::kGenericRead);
    EXPECT_EQ(asked.share, 3u);
    EXPECT_EQ(asked.creation, platform::kOpenExisting);
    EXPECT_EQ(asked.attributes, 0u);
}

}  // namespace
}  // namespace nmshell
