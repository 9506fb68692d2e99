#include "contextmenu/dropped_paths.h"

#include "testing/host.h"

namespace nmshell {
namespace {

using namespace std::string_literals;
using namespace test;
using DroppedPathsTest = HostTest;

TEST_F(DroppedPathsTest, AreAllThatCanBeReadInOrder) {
    const std::u16string kLong(300, u'l');
    const struct Case {
        const char* name;
        std::vector<host::DropItem> items;
        owlkit::PathList paths;
    } cases[] = {
        {"none", {}, {}},
        {"in order, twice the same", {{u"D:\\b"}, {u"C:\\a"}, {u"D:\\b"}}, {u"D:\\b", u"C:\\a", u"D:\\b"}},
        {"one unreadable", {{u"C:\\a"}, {u"C:\\secret", false}, {u"C:\\c"}}, {u"C:\\a", u"C:\\c"}},
        {"the last unreadable", {{u"C:\\a"}, {kLong, false}}, {u"C:\\a"}},
        {"all unreadable", {{u"C:\\a", false}, {u"C:\\b", false}}, {}},
        {"long and short", {{kLong}, {u"C:\\a"}, {kLong}, {kLong}}, {kLong, u"C:\\a", kLong, kLong}},
    };
    owlkit::PathList paths{u"old"};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Drop drop(c.items);
        host::releasedMedia() = 0;
        EXPECT_EQ(CollectDroppedPaths(&drop.data, paths), c.items.size());
        EXPECT_EQ(paths, c.paths);
        EXPECT_EQ(host::releasedMedia(), 1u);
        EXPECT_EQ(drop.data.references(), 0u);
        const FORMATETC& f = drop.data.lastFormat();
        EXPECT_EQ(f.cfFormat, 15);
        EXPECT_EQ(f.ptd, nullptr);
        EXPECT_EQ(f.dwAspect, 1u);
        EXPECT_EQ(f.lindex, -1);
        EXPECT_EQ(f.tymed, 1u);
    }
}

TEST_F(DroppedPathsTest, AreNoneWithoutADropList) {
    Drop drop({{u"C:\\a"}});
    host::DataObject without(nullptr), failing(drop.global, E_OUTOFMEMORY),
        file(drop.global, S_OK, TYMED_FILE);
    for (IDataObject* const data : std::initializer_list<IDataObject*>{nullptr, &without, &failing, &file}) {
        owlkit::PathList paths{u"old"};
        EXPECT_EQ(CollectDroppedPaths(data, paths), 0u);
        EXPECT_EQ(paths, owlkit::PathList());
        EXPECT_EQ(host::releasedMedia(), data == &file ? 1u : 0u);
    }
}

}  // namespace
}  // namespace nmshell
