#include "contextmenu/selection.h"

#include <algorithm>

#include "contextmenu/launch_request.h"
#include "tests/host_fixture.h"

namespace nmshell {
namespace {

using namespace std::string_literals;

class SelectionTest : public HostTest {};

TEST_F(SelectionTest, KeepsEveryPathThatCanBeReadInOrder) {
    std::u16string longPaths;
    std::vector<platform::DropItem> longItems;
    for (char16_t c = u'a'; c < u'a' + 20; ++c) {
        longItems.push_back({std::u16string(300, c)});
        longPaths.append(300, c).push_back(u'\0');
    }
    const struct {
        const char* name;
        std::vector<platform::DropItem> items;
        std::u16string paths;
    } kCases[] = {
        {"none", {}, u""},
        {"one", {{u"C:\\a"}}, u"C:\\a\0"s},
        {"three", {{u"D:\\b"}, {u"C:\\a"}, {u"D:\\b"}}, u"D:\\b\0C:\\a\0D:\\b\0"s},
        {"second unreadable", {{u"C:\\a"}, {u"C:\\secret", false}, {u"C:\\c"}}, u"C:\\a\0C:\\c\0"s},
        {"last unreadable", {{u"C:\\a"}, {std::u16string(200, u'x'), false}}, u"C:\\a\0"s},
        {"all unreadable", {{u"C:\\a", false}, {u"C:\\b", false}}, u""},
        {"longer than the guess", longItems, longPaths},
    };
    std::u16string paths = u"old";
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        Drop drop(c.items);
        host::releasedMedia() = 0;
        EXPECT_EQ(CollectDroppedPaths(&drop.data, paths), c.items.size());
        EXPECT_EQ(paths, c.paths);
        EXPECT_EQ(host::releasedMedia(), 1u);
        EXPECT_EQ(drop.data.references(), 0u);
        const FORMATETC& format = drop.data.lastFormat();
        EXPECT_EQ(format.cfFormat, 15);
        EXPECT_EQ(format.ptd, nullptr);
        EXPECT_EQ(format.dwAspect, 1u);
        EXPECT_EQ(format.lindex, -1);
        EXPECT_EQ(format.tymed, 1u);
    }
}

TEST_F(SelectionTest, IsEmptyWithoutADropList) {
    host::DataObject without(nullptr);
    Drop drop({{u"C:\\a"}});
    host::DataObject failing(drop.global, E_OUTOFMEMORY);
    for (IDataObject* const data : {static_cast<IDataObject*>(nullptr), static_cast<IDataObject*>(&without),
                                    static_cast<IDataObject*>(&failing)}) {
        std::u16string paths = u"old";
        EXPECT_EQ(CollectDroppedPaths(data, paths), 0u);
        EXPECT_EQ(paths, u"");
    }
    EXPECT_EQ(host::releasedMedia(), 0u);
}

TEST_F(SelectionTest, NeverShortensAPathWhenTheDropListFails) {
    const std::vector<std::u16string> all = {u"C:\\a", u"C:\\ab", u"C:\\abc"};
    for (const char* const operation : {"GlobalLock", "DragQueryFileW"}) {
        for (std::uint32_t n = 1;; ++n) {
            SCOPED_TRACE(operation + std::to_string(n));
            Drop drop({{all[0]}, {all[1]}, {all[2]}});
            host::releasedMedia() = 0;
            fault::arm(operation, n, platform::kErrorInvalidHandle);
            std::u16string paths;
            const std::uint32_t count = CollectDroppedPaths(&drop.data, paths);
            const std::vector<std::u16string> found = splitPathList(paths);
            EXPECT_TRUE(std::includes(all.begin(), all.end(), found.begin(), found.end()));
            EXPECT_EQ(count, fault::fired() && n == 1 ? 0u : 3u);
            EXPECT_EQ(found.size(), count - (fault::fired() && count != 0 ? 1 : 0));
            EXPECT_EQ(host::releasedMedia(), 1u);
            EXPECT_EQ(drop.data.references(), 0u);
            if (!fault::fired())
                break;
        }
    }
}

TEST_F(SelectionTest, WalksALongDropListOnce) {
    constexpr std::uint32_t kMany = 50000;
    Drop drop(std::vector<platform::DropItem>(kMany, {std::u16string(60, u'p')}));
    std::u16string paths;
    EXPECT_EQ(CollectDroppedPaths(&drop.data, paths), kMany);
    EXPECT_EQ(paths.size(), kMany * 61u);
    EXPECT_LE(fault::calls("DragQueryFileW"), 2 * kMany + 1);
    EXPECT_EQ(fault::calls("GlobalLock"), 1u);
}

TEST_F(SelectionTest, TellsFilesFromFolders) {
    makeFile("file");
    std::filesystem::create_directory("sub");
    EXPECT_EQ(pathType(u"file"), PathType::File);
    EXPECT_EQ(pathType(u"sub"), PathType::Folder);
    EXPECT_EQ(pathType(u"gone"), PathType::Unreadable);
    EXPECT_EQ(pathType(firstPath(u"")), PathType::Unreadable);
    EXPECT_EQ(pathType(firstPath(u"sub\0file\0"s)), PathType::Folder);
}

TEST_F(SelectionTest, AsksForTheSystemDriveOnce) {
    const struct {
        const char* name;
        std::optional<std::u16string> windows;
        int number;
    } kCases[] = {
        {"lower case", u"e:\\windows", 4},
        {"unknown", std::nullopt, -1},
        {"empty", u"", -1},
        {"no drive", u"\\\\server\\windows", -1},
        {"just fits", u"Z:\\" + std::u16string(252, u'w'), 25},
        {"too long", u"Z:\\" + std::u16string(253, u'w'), -1},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        platform::setWindowsDirectory(c.windows);
        fault::resetCounts();
        SystemDrive drive;
        EXPECT_EQ(drive.number(), c.number);
        EXPECT_EQ(drive.holds(u"Z:\\"), c.number == 25);
        EXPECT_EQ(drive.holds(u"\\\\?\\e:\\x"), c.number == 4);
        EXPECT_FALSE(drive.holds(u"A:\\"));
        EXPECT_TRUE(drive.holds(u"\\\\server\\share"));
        EXPECT_TRUE(drive.holds(u""));
        EXPECT_EQ(fault::calls("GetWindowsDirectoryW"), 1u);
    }
}

}  // namespace
}  // namespace nmshell
