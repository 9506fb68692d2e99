#include "foundation/path/path_list.h"

#include <gtest/gtest.h>

#include <vector>

namespace owlkit {
namespace {

using namespace std::string_literals;
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
