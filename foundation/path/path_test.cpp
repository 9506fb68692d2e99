#include "foundation/path/path.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/file.h"

namespace owlkit {
namespace {

constexpr bool kHasBackslash = platform::kPathSeparator == u'\\';

TEST(Path, HasTheFolderBeforeItsLastSeparator) {
    const struct Case {
        std::u16string path;
        std::u16string folder;
    } cases[] = {
        {u"", u""},          {u"file", u""},       {u"/", u"/"},
        {u"/a/b c", u"/a/"}, {u"/a/b/", u"/a/b/"}, {u"C:\\a/b\\c", kHasBackslash ? u"C:\\a/b\\" : u"C:\\a/"},
        {u"C:file", u""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(folderOf(c.path), c.folder) << testing::PrintToString(c.path);
}

TEST(Path, GetsOneSeparator) {
    const std::u16string separator(1, platform::kPathSeparator);
    EXPECT_EQ(withTrailingSeparator(u"a"), u"a" + separator);
    EXPECT_EQ(withTrailingSeparator(u"a" + separator), u"a" + separator);
    EXPECT_EQ(withTrailingSeparator(u"a/"), u"a/");
    EXPECT_EQ(withTrailingSeparator(u"a\\"), kHasBackslash ? u"a\\" : u"a\\/");
    EXPECT_EQ(withTrailingSeparator(u""), u"");
}

TEST(Path, TellsWhatLiesThere) {
    const std::u16string folder = std::filesystem::current_path().u16string();
    const std::u16string program = std::filesystem::absolute(testing::internal::GetArgvs()[0]).u16string();
    EXPECT_EQ(pathType(folder), PathType::Folder);
    EXPECT_EQ(pathType(withTrailingSeparator(folder)), PathType::Folder);
    EXPECT_EQ(pathType(u"/"), PathType::Folder);
    EXPECT_EQ(pathType(program), PathType::File);
    EXPECT_EQ(pathType(program + u'\0'), PathType::Unreadable);
    EXPECT_EQ(pathType(folder + u"/no such file"), PathType::Unreadable);
    EXPECT_EQ(pathType(u""), PathType::Unreadable);
}

}  // namespace
}  // namespace owlkit
