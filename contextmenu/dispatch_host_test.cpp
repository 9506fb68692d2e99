#include "contextmenu/dispatch.h"

#include <functional>

#include "contextmenu/commands.h"
#include "contextmenu/handover_file.h"
#include "foundation/process/folders.h"
#include "platform/file.h"
#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;

using namespace std::string_literals;

class DispatchTest : public HostTest {
  protected:
    DispatchTest() { launcher_.setModuleFolder(u"C:\\App\\"); }

    bool handsOver(const LaunchRequest& request) {
        return launcher_.buildArguments(0x101, request).find(u"-tfn") != std::u16string::npos;
    }
    static auto filesHere() {
        return std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator());
    }

    std::uint32_t counter_ = 0;
    ApplicationLauncher launcher_{counter_};
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
    for (std::uint32_t offset = 0; offset < kCommandCount; ++offset) {
        platform::setShellExecuteResult(offset % 2 * 42);  // success is not reported
        EXPECT_TRUE(dispatch(offset, this, selection_, launcher_));
        ASSERT_EQ(platform::shellStarts().size(), offset + 1);
        EXPECT_EQ(lastStart(), kStarts[offset]);
        EXPECT_EQ(platform::shellStarts().back().owner, kStarts[offset].starts_with(site) ? nullptr : this);
    }
    for (const std::uint32_t offset : {15u, 0xFFFFu, 0xFFFFFFFFu}) {
        EXPECT_FALSE(dispatch(offset, this, selection_, launcher_));
        EXPECT_EQ(platform::shellStarts().size(), 15u);
    }
    fault::arm("GetCursorPos", 1, platform::kErrorAccessDenied);
    EXPECT_TRUE(dispatch(kAdminTrashAll, nullptr, selection_, launcher_));
    EXPECT_EQ(lastStart(), runas + u"-cmd 105");
    launcher_.setModuleFolder(u"");
    for (const std::int64_t result : {33, 32}) {
        owlkit::recordApplicationFolder(result == 33 ? folder() : u"/");  // asked for once
        platform::setShellExecuteResult(result);
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
    EXPECT_TRUE(platform::shellStarts().empty());
    EXPECT_EQ(filesHere(), 0);
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
        EXPECT_EQ(platform::shellStarts().back().verb, verb)
            << testing::PrintToString(paths.text()) << operation;
    }
    const platform::CreateFileArguments& asked = platform::lastCreateFile();
    EXPECT_TRUE(asked.path == u"\\\\.\\D:");
    EXPECT_TRUE(asked.access == platform::kGenericRead);
    EXPECT_TRUE(asked.share == 3);
    EXPECT_TRUE(asked.creation == platform::kOpenExisting);
    EXPECT_TRUE(asked.attributes == 0);
}

// A file with a part of the paths would be a smaller selection, and one that nobody is told of keeps names.
TEST_F(DispatchTest, LeavesNoHandoverFileThatIsNotWhole) {
    const LaunchRequest request{0x101, std::u16string(600, u'd'), {}, {}, false};
    for (const std::uint32_t bytes : {0u, 1u, 599u, 600u}) {
        platform::limitWrites(bytes);
        EXPECT_EQ(handsOver(request), bytes == 600) << bytes;
        EXPECT_EQ(filesHere(), bytes == 600 ? 1 : 0) << bytes;
    }
    std::filesystem::remove(platform::lastCreateFile().path);
    platform::limitWrites({});
    for (const char* const operation : {"CreateFileW", "GetFileSizeEx", "WriteFile"}) {
        fault::arm(operation, 1, platform::kErrorDiskFull);
        EXPECT_EQ(launcher_.buildArguments(0x101, request), u"-cmd 101 ");
        EXPECT_TRUE(fault::fired()) << operation;
        EXPECT_EQ(filesHere(), 0) << operation;
    }
}

// The name can be known before: what was laid there must not lead the paths, or the emptying, elsewhere.
TEST_F(DispatchTest, WritesTheHandoverFileInPlaceOfWhatWasLaidThere) {
    const LaunchRequest request{0x101, std::u16string(600, u'd'), {}, {}, false};
    const std::string name = platform::toHostName(folder()) + "tfn_db710640.tmp";
    const struct {
        const char* what;
        std::function<void()> lay;
        bool handedOver;
    } kCases[] = {
        {"a link", [&] { std::filesystem::create_symlink("kept", name); }, true},
        {"a second name", [&] { std::filesystem::create_hard_link("kept", name); }, true},
        {"a link to nothing", [&] { std::filesystem::create_symlink("gone", name); }, true},
        {"an old file", [&] { makeFile(name.c_str(), "old"); }, true},
        {"a folder", [&] { std::filesystem::create_directory(name); }, false},
        {"a link to a folder", [&] { std::filesystem::create_symlink(".", name); }, false},
        {"a read-only file",
         [&] {
             makeFile(name.c_str(), "old");
             std::filesystem::permissions(name, std::filesystem::perms::owner_read);
         },
         false},
        {"a link to nothing that cannot be deleted",
         [&] {
             std::filesystem::create_symlink("gone", name);
             fault::arm("DeleteFileW", 1, platform::kErrorAccessDenied);
         },
         false},
        {"a link that cannot be deleted",
         [&] {
             std::filesystem::create_symlink("kept", name);
             fault::arm("DeleteFileW", 1, platform::kErrorAccessDenied);
         },
         false},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        makeFile("kept", "kept");
        c.lay();
        counter_ = 0;
        EXPECT_EQ(handsOver(request), c.handedOver);
        EXPECT_EQ(std::filesystem::file_size("kept"), 4u);
        EXPECT_FALSE(std::filesystem::exists("gone"));
        if (c.handedOver) {
            EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(name)));
            EXPECT_EQ(std::filesystem::file_size(name), 600u);
        }
        std::filesystem::remove(name);
    }
}

TEST_F(DispatchTest, GoesAheadWithoutDataThatCannotBeWritten) {
    LaunchRequest request{0x101, std::u16string(513, u'd'), {}, {}, false};
    std::u16string escaped = folder();
    escaped.replace(escaped.find(u' '), 1, u"%20");
    const std::tuple<const char*, std::u16string, std::u16string> kCases[] = {
        {"none", u"", u"-cmd 101 -tfn " + escaped + u"tfn_db710640.tmp"},
        {"CreateFileW", u"", u"-cmd 101 "},
        {"WriteFile", u"", u"-cmd 101 "},
        {"CreateFileW", u"a b", u"-cmd 101  -p a%20b"},
        {"GetTempPathW", u"", u"-cmd 101 -tfn tfn_925312c0.tmp"},        // no folder at all
        {"GetFileAttributesW", u"", u"-cmd 101 -tfn tfn_800b95e0.tmp"},  // one that does not exist
    };
    for (const auto& [operation, path, parameters] : kCases) {
        request.path = path;
        fault::arm(operation, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(launcher_.buildArguments(0x101, request), parameters) << operation;
    }
    const std::u16string name = escaped + u"tfn_db710640.tmp";
    LaunchRequest back;
    parseArguments({u"-tfn", name}, back);
    EXPECT_EQ(back.data, request.data);
    ASSERT_TRUE(writeHandoverFile(folder() + u"tfn_db710640.tmp", request.data));
    fault::arm("ReadFile", 1, platform::kErrorAccessDenied, true);
    parseArguments({u"-tfn", name}, back);
    EXPECT_EQ(back.data, u"");
    fault::disarm();
}

}  // namespace
}  // namespace nmshell
