#include "foundation/path/path.h"

#include "foundation/path/path_list.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/file.h"

namespace owlkit {
namespace {

using namespace std::string_literals;

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

using Paths = std::vector<std::u16string_view>;

TEST(PathList, HasThePathsThatEnd) {
    const struct Case {
        const char* name;
        std::u16string text;
        Paths paths;
        std::u16string kept;
    } cases[] = {
        {"nothing", u"", {}, u""},
        {"one", u"C:\\a b\0"s, {u"C:\\a b"}, u"C:\\a b\0"s},
        {"in order, twice the same", u"b\0a\0b\0"s, {u"b", u"a", u"b"}, u"b\0a\0b\0"s},
        {"only a cut path", u"C:\\a", {}, u""},
        {"a cut last path", u"C:\\a\0C:\\ab"s, {u"C:\\a"}, u"C:\\a\0"s},
        {"empty paths", u"\0a\0\0"s, {u"", u"a", u""}, u"\0a\0\0"s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PathList list = PathList::fromText(c.text);
        EXPECT_EQ(list.text(), c.kept);
        EXPECT_EQ(Paths(list.begin(), list.end()), c.paths);
        EXPECT_EQ(list.count(), c.paths.size());
        EXPECT_EQ(list.empty(), c.paths.empty());
        EXPECT_EQ(list.first(), c.paths.empty() ? u"" : c.paths.front());
        PathList built;
        for (const std::u16string_view path : c.paths)
            built.append(path);
        EXPECT_EQ(built, list);
    }
    EXPECT_EQ((PathList{u"a", u"b"}).text(), u"a\0b\0"s);
}

}  // namespace
}  // namespace owlkit
