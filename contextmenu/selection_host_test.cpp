#include "contextmenu/selection.h"

#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;

using namespace std::string_literals;
using SelectionTest = HostTest;

TEST_F(SelectionTest, KeepsEveryPathThatCanBeReadInOrder) {
    const std::u16string kLong(300, u'l');
    const std::pair<std::vector<platform::DropItem>, std::u16string> kCases[] = {
        {{}, u""},
        {{{u"D:\\b"}, {u"C:\\a"}, {u"D:\\b"}}, u"D:\\b\0C:\\a\0D:\\b\0"s},
        {{{u"C:\\a"}, {u"C:\\secret", false}, {u"C:\\c"}}, u"C:\\a\0C:\\c\0"s},
        {{{u"C:\\a"}, {kLong, false}}, u"C:\\a\0"s},
        {{{u"C:\\a", false}, {u"C:\\b", false}}, u""},
        {{{kLong}, {u"C:\\a"}, {kLong}, {kLong}}, kLong + u"\0C:\\a\0"s + kLong + u'\0' + kLong + u'\0'},
    };
    std::u16string paths = u"old";
    for (const auto& [items, expected] : kCases) {
        Drop drop(items);
        host::releasedMedia() = 0;
        EXPECT_EQ(CollectDroppedPaths(&drop.data, paths), items.size());
        EXPECT_EQ(paths, expected);
        EXPECT_TRUE(host::releasedMedia() == 1);
        EXPECT_TRUE(drop.data.references() == 0);
        const FORMATETC& f = drop.data.lastFormat();
        EXPECT_TRUE(f.cfFormat == 15);
        EXPECT_TRUE(!f.ptd);
        EXPECT_TRUE(f.dwAspect == 1);
        EXPECT_TRUE(f.lindex == -1);
        EXPECT_TRUE(f.tymed == 1);
    }
}

TEST_F(SelectionTest, IsEmptyWithoutADropList) {
    Drop drop({{u"C:\\a"}});
    host::DataObject without(nullptr), failing(drop.global, E_OUTOFMEMORY);
    for (IDataObject* const data : std::initializer_list<IDataObject*>{nullptr, &without, &failing}) {
        std::u16string paths = u"old";
        EXPECT_TRUE(CollectDroppedPaths(data, paths) == 0);
        EXPECT_TRUE(paths.empty());
    }
    EXPECT_EQ(host::releasedMedia(), 0u);
    host::DataObject file(drop.global, S_OK, TYMED_FILE);
    std::u16string paths = u"old";
    EXPECT_EQ(CollectDroppedPaths(&file, paths), 0u);
    EXPECT_EQ(paths, u"");
    EXPECT_EQ(host::releasedMedia(), 1u);
}

TEST_F(SelectionTest, WalksALongDropListOnce) {
    Drop drop(std::vector<platform::DropItem>(50000, {std::u16string(60, u'p')}));
    std::u16string paths;
    EXPECT_EQ(CollectDroppedPaths(&drop.data, paths), 50000u);
    EXPECT_EQ(paths.size(), 50000u * 61);
    EXPECT_TRUE(fault::calls("DragQueryFileW") <= 100001);
    EXPECT_TRUE(fault::calls("GlobalLock") == 1);
}

TEST_F(SelectionTest, AsksForTheSystemDriveOnce) {
    const std::pair<std::optional<std::u16string>, bool> kCases[] = {
        {u"z:\\w", true},
        {u"Z:\\" + std::u16string(252, u'w'), true},
        {u"Z:\\" + std::u16string(253, u'w'), false},
        {u"E:\\", false},
        {u"", false},
        {std::nullopt, false}};
    for (const auto& [windows, onZ] : kCases) {
        platform::setWindowsDirectory(windows);
        fault::resetCounts();
        SystemDrive drive;
        EXPECT_TRUE(drive.holds(u"\\\\?\\Z:\\x") == onZ);
        EXPECT_TRUE(drive.holds(u"\\\\server\\share"));
        EXPECT_TRUE(drive.holds(u""));
        EXPECT_TRUE(!drive.holds(u"D:\\"));
        EXPECT_TRUE(fault::calls("GetWindowsDirectoryW") == 1);
    }
}

}  // namespace
}  // namespace nmshell
