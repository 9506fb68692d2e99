#include "contextmenu/handover_file.h"

#include <filesystem>
#include <functional>
#include <iterator>

#include "platform/file.h"
#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;

class HandoverFileTest : public HostTest {
  protected:
    static auto filesHere() {
        return std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator());
    }

    const std::u16string data_ = std::u16string(600, u'd');
    const std::u16string name_ = folder() + u"tfn_db710640.tmp";
};

TEST_F(HandoverFileTest, HasNoFolderWhereThereIsNone) {
    EXPECT_EQ(HandoverFiles().makeHandoverFileName(), name_);
    for (const char* const operation : {"GetTempPathW", "GetFileAttributesW"}) {
        fault::arm(operation, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(HandoverFiles().makeHandoverFileName(), u"tfn_db710640.tmp") << operation;
    }
}

// A file with a part of the paths would be a smaller selection, and one that nobody is told of keeps names.
TEST_F(HandoverFileTest, IsWholeOrNotThere) {
    for (const std::uint32_t bytes : {0u, 1u, 599u, 600u}) {
        host::limitWrites(bytes);
        EXPECT_EQ(writeHandoverFile(name_, data_), bytes == 600) << bytes;
        EXPECT_EQ(filesHere(), bytes == 600 ? 1 : 0) << bytes;
    }
    host::limitWrites({});
    failEach({"CreateFileW", "GetFileSizeEx", "WriteFile"}, platform::kErrorDiskFull, [&] {
        EXPECT_FALSE(writeHandoverFile(name_, data_));
        EXPECT_EQ(filesHere(), 0);
    });
    ASSERT_TRUE(writeHandoverFile(name_, data_));
    fault::arm("ReadFile", 1, platform::kErrorAccessDenied, true);
    EXPECT_EQ(readHandoverFile(name_), u"");
    fault::disarm();
}

// The name can be known before: what was laid there must not lead the paths, or the emptying, elsewhere.
TEST_F(HandoverFileTest, IsWrittenInPlaceOfWhatWasLaidThere) {
    namespace fs = std::filesystem;
    const std::string name = platform::toHostName(name_);
    const auto link = [&](const char* to) { fs::create_symlink(to, name); };
    const struct Case {
        const char* what;
        std::function<void()> lay;
        bool handedOver;
        const char* failing = "nothing";
    } cases[] = {
        {"a link", [&] { link("kept"); }, true},
        {"a second name", [&] { fs::create_hard_link("kept", name); }, true},
        {"a link to nothing", [&] { link("gone"); }, true},
        {"an old file", [&] { makeFile(name.c_str(), "old"); }, true},
        {"a folder", [&] { fs::create_directory(name); }, false},
        {"a link to a folder", [&] { link("."); }, false},
        {"a read-only file",
         [&] {
             makeFile(name.c_str(), "old");
             fs::permissions(name, fs::perms::owner_read);
         },
         false},
        {"a link to nothing that cannot be deleted", [&] { link("gone"); }, false, "DeleteFileW"},
        {"a link that cannot be deleted", [&] { link("kept"); }, false, "DeleteFileW"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        makeFile("kept", "kept");
        c.lay();
        fault::arm(c.failing, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(writeHandoverFile(name_, data_), c.handedOver);
        EXPECT_EQ(fs::file_size("kept"), 4u);
        EXPECT_FALSE(fs::exists("gone"));
        if (c.handedOver) {
            EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(name)));
            EXPECT_EQ(fs::file_size(name), 600u);
        }
        fs::remove(name);
    }
}

}  // namespace
}  // namespace nmshell
