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
    for (const char* const operation : {"CreateFileW", "GetFileSizeEx", "WriteFile"}) {
        fault::arm(operation, 1, platform::kErrorDiskFull);
        EXPECT_FALSE(writeHandoverFile(name_, data_)) << operation;
        EXPECT_TRUE(fault::fired()) << operation;
        EXPECT_EQ(filesHere(), 0) << operation;
    }
    ASSERT_TRUE(writeHandoverFile(name_, data_));
    fault::arm("ReadFile", 1, platform::kErrorAccessDenied, true);
    EXPECT_EQ(readHandoverFile(name_), u"");
    fault::disarm();
}

// The name can be known before: what was laid there must not lead the paths, or the emptying, elsewhere.
TEST_F(HandoverFileTest, IsWrittenInPlaceOfWhatWasLaidThere) {
    const std::string name = platform::toHostName(name_);
    const auto cannotBeDeleted = [] { fault::arm("DeleteFileW", 1, platform::kErrorAccessDenied); };
    const struct Case {
        const char* what;
        std::function<void()> lay;
        bool handedOver;
    } cases[] = {
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
             cannotBeDeleted();
         },
         false},
        {"a link that cannot be deleted",
         [&] {
             std::filesystem::create_symlink("kept", name);
             cannotBeDeleted();
         },
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        makeFile("kept", "kept");
        c.lay();
        EXPECT_EQ(writeHandoverFile(name_, data_), c.handedOver);
        EXPECT_EQ(std::filesystem::file_size("kept"), 4u);
        EXPECT_FALSE(std::filesystem::exists("gone"));
        if (c.handedOver) {
            EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(name)));
            EXPECT_EQ(std::filesystem::file_size(name), 600u);
        }
        std::filesystem::remove(name);
    }
}

}  // namespace
}  // namespace nmshell
