#include "contextmenu/menu_model.h"

#include <algorithm>

#include "contextmenu/menu_insertion.h"
#include "foundation/process/elevation.h"
#include "foundation/text/number.h"
#include "foundation/text/text.h"
#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;

using namespace std::string_literals;
using enum SelectionKind;

class MenuTest : public HostTest {
  protected:
    MenuTest() {
        host::setModuleFileName(host::moduleAt(this), folder() + u"nmshell.dll");
        texts_.BeginLoad();
        texts_.SetLanguage(u"en");
        texts_.SetKey(u"CXT_MENU_PARENT");
        texts_.AddText(u"%1+");
        texts_.SetKey(u"CXT_MENU_ABOUT");
        texts_.AddText(u"%1? %2%1!");
        texts_.EndLoad();
    }

    void insert(const platform::MenuHandle& menu, std::uint32_t position, SelectionKind kind,
                bool icons = true) {
        const MenuFacts facts{owlkit::PathType::File, true, RecycleBinState::Empty,
                              owlkit::ElevationState::Full};
        MenuInserter(1000, icons, bitmaps_)
            .insert(menu.get(), position, buildMenu({kind, 1, {}}, facts, texts_));
    }

    // A menu that has these items already.
    static platform::MenuHandle menuOf(std::initializer_list<std::u16string_view> texts) {
        platform::MenuHandle menu = platform::createMenu();
        for (const std::u16string_view text : texts)
            EXPECT_TRUE(platform::insertMenuItem(menu.get(), 9, {.hasText = true, .text = text}).succeeded());
        return menu;
    }

    BitmapCache bitmaps_{host::moduleAt(this)};
    owlkit::interlang texts_;
};

// The keys in order, shortened; "!" marks what is grayed, brackets hold a submenu.
std::string sketch(const std::vector<MenuEntry>& entries) {
    std::string result;
    for (const MenuEntry& entry : entries) {
        std::string text = platform::toHostName(shownText(entry));
        for (const char* const common : {"CXT_MENU_", "WIPE_", "_TRASH"})
            text = owlkit::replaceAll(text, common, "");
        result += (result.empty() ? "" : " ") + text + (entry.grayed ? "!" : "");
        if (entry.submenu)
            result += "[" + sketch(entry.children) + "]";
    }
    return result;
}

TEST_F(MenuTest, OffersWhatTheSelectionAllows) {
    makeFile("file");
    std::filesystem::create_directory("sub");
    const owlkit::PathList d{u"D:\\"};
    const struct {
        const char* name;
        SelectionKind kind;
        std::uint32_t count;
        owlkit::PathList paths;
        int bin;  // items in the recycle bin of D:, or of all drives; -1 when it cannot be asked
        std::uint32_t elevationType;  // 1 not split, 2 full, 3 limited
        std::string own;              // before the product submenu; empty when there is no menu at all
    } kCases[] = {
        {"file", Files, 1, {u"file"}, -1, 1, "-- FILE"},
        {"folder", Files, 1, {u"sub"}, -1, 1, "-- FOLDER"},
        {"vanished", Files, 1, {u"gone"}, -1, 1, "-- "},
        {"two, one of them read", Files, 2, {u"file"}, -1, 1, "-- DATA"},
        {"no file", Files, 0, {}, -1, 1, ""},
        {"drive", Drives, 1, d, 1, 3, "-- DRIVE CLEAN_DRIVE DRIVE[USER ADMIN]"},
        {"elevated", Drives, 1, d, 9, 2, "-- DRIVE CLEAN_DRIVE DRIVE[USER! ADMIN]"},
        {"not split", Drives, 1, d, 9, 1, "-- DRIVE CLEAN_DRIVE DRIVE[USER ADMIN!]"},
        {"empty bin", Drives, 1, d, 0, 3, "-- DRIVE CLEAN_DRIVE DRIVE EMPTY_POSTFIX![USER ADMIN]"},
        {"no bin", Drives, 1, d, -1, 3, "-- DRIVE CLEAN_DRIVE DRIVE NONE_POSTFIX![USER ADMIN]"},
        {"system", Drives, 1, {u"c:\\"}, 1, 3, "-- DRIVE! CLEAN_DRIVE DRIVE NONE_POSTFIX![USER ADMIN]"},
        {"no drive", Drives, 1, {u"\\\\s"}, 1, 3, "-- DRIVE! CLEAN_DRIVE DRIVE NONE_POSTFIX![USER ADMIN]"},
        {"no path", Drives, 1, {}, 3, 3, "-- DRIVE! CLEAN_DRIVE DRIVE NONE_POSTFIX![USER ADMIN]"},
        {"two drives", Drives, 2, d, 1, 3, "-- DRIVE! CLEAN_DRIVE DRIVE![USER ADMIN]"},
        {"no drives", Drives, 0, {}, 1, 3, ""},
        {"all bins", RecycleBin, 0, {}, 3, 1, "-- ALL[USER ADMIN!]"},
        {"all, elevated", RecycleBin, 1, d, 3, 2, "-- ALL[USER! ADMIN]"},
        {"all unknown", RecycleBin, 0, {}, -1, 3, "-- ALL![USER ADMIN]"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        host::resetShell();
        host::tokenRecord() = {.elevationType = c.elevationType};
        owlkit::forgetElevation();
        if (c.bin >= 0)
            host::setRecycleBin(c.kind == RecycleBin || c.paths.empty() ? u"" : u"D:\\",
                                host::RecycleBin{0, c.bin});
        SystemDrive systemDrive;
        const Selection selection{c.kind, c.count, c.paths};
        const std::string menu = sketch(buildMenu(selection, gatherFacts(selection, systemDrive), {}));
        EXPECT_EQ(menu.substr(0, menu.find(" PARENT[")), c.own);
    }
}

// One line an item: mask, type, state, identifier, text, resource of the bitmap; submenus are indented.
std::string dump(const host::Menu& menu, const std::string& indent = "") {
    std::string lines;
    for (const host::RecordedItem& item : menu.items) {
        lines += indent;
        for (const std::uint32_t number : {item.request.mask, item.request.type, item.request.state})
            lines += owlkit::formatNumber<char>(number, owlkit::NumberFormat::LowerHex) + " ";
        lines += std::to_string(item.request.id) + " " +
                 (item.request.hasText ? platform::toHostName(item.text) : "(none)");
        if (item.request.mask & platform::kItemBitmap)
            lines += " #" + std::to_string(host::bitmapId(item.request.bitmap));
        lines += "\n" + (item.submenu ? dump(*item.submenu, indent + " ") : "");
    }
    return lines;
}

const std::string kProduct = R"(c7 0 0 0 Nullmark+ #236
 c3 0 0 1009 CXT_MENU_OPTIONS #237
 c3 0 0 1007 CXT_MENU_STANDALONE #238
 43 800 0 0 (none)
 43 0 0 1011 CXT_MENU_UPDATE
 43 0 0 1012 CXT_MENU_REGISTER
 43 0 0 1013 CXT_MENU_UPGRADE
 43 800 0 0 (none)
 c3 0 0 1010 CXT_MENU_HELP #239
 c3 0 0 1014 Nullmark? Nullmark! #240
43 800 0 0 (none)
)";

TEST_F(MenuTest, InsertsTheWholeTreeAtItsPosition) {
    const std::pair<SelectionKind, std::string> kCases[] = {
        {Files, "c3 0 0 1000 CXT_MENU_WIPE_FILE #230\n"},
        {Drives, R"(43 0 3 1001 CXT_MENU_WIPE_DRIVE
c3 0 0 1002 CXT_MENU_CLEAN_DRIVE #232
47 0 3 0 CXT_MENU_WIPE_DRIVE_TRASH CXT_MENU_EMPTY_POSTFIX
 43 0 3 1003 CXT_MENU_USER_TRASH
 c3 0 0 1005 CXT_MENU_ADMIN_TRASH #235
)"},
        {RecycleBin, R"(47 0 3 0 CXT_MENU_WIPE_ALL_TRASH
 43 0 3 1004 CXT_MENU_USER_TRASH
 c3 0 0 1006 CXT_MENU_ADMIN_TRASH #235
)"},
    };
    for (const auto& [kind, own] : kCases) {
        const std::string whole = "0 0 0 0 before\n43 800 0 0 (none)\n" + own + kProduct;
        const platform::MenuHandle menu = menuOf({u"before", u"behind"});
        insert(menu, 1, kind);
        EXPECT_EQ(dump(host::menu(menu.get())), whole + "0 0 0 0 behind\n");
        for (const std::uint32_t position : {0xFFFFFFFEu, 0xFFFFFFFFu}) {  // behind everything, in order
            const platform::MenuHandle end = menuOf({u"before"});
            insert(end, position, kind);
            EXPECT_EQ(dump(host::menu(end.get())), whole);
        }
        const platform::MenuHandle plain = menuOf({});
        insert(plain, 0, kind, false);
        EXPECT_EQ(dump(host::menu(plain.get())).find_first_of("c#"), std::string::npos);
    }
}

TEST_F(MenuTest, GoesOnAfterFailures) {
    std::vector<platform::MenuHandle> menus(50);  // made while no call fails
    std::ranges::generate(menus, platform::createMenu);
    const auto inserted = [&] {
        bitmaps_.clear();
        const platform::MenuHandle menu = std::move(menus.back());
        menus.pop_back();
        insert(menu, 0, Drives);
        return dump(host::menu(menu.get()));
    };
    const std::string whole = inserted();
    const auto lostBy = [&](const char* operation) {
        std::vector<std::ptrdiff_t> lost;
        walkFaults(operation, platform::kErrorNotEnoughMemory, [&] {
            const std::string text = inserted();
            EXPECT_EQ(text == whole, !fault::fired());
            lost.push_back(std::ranges::count(whole, '\n') - std::ranges::count(text, '\n'));
        });
        return lost;
    };
    EXPECT_EQ(lostBy("CreateMenu"), (std::vector<std::ptrdiff_t>{3, 10, 0})) << "a submenu with its entry";
    EXPECT_EQ(std::ranges::max(lostBy("LoadImageW")), 0);
    EXPECT_LE(std::ranges::max(lostBy("InsertMenuItemW")), 10);  // the product submenu at most
}

// Whatever the text was made of.
TEST_F(MenuTest, TakesTwoDashesForASeparator) {
    const struct Case {
        MenuEntry entry;
        bool separator;
    } cases[] = {{{.text = "--"}, true},
                 {{.text = "%2-%2-", .namesProduct = true}, true},
                 {{.text = "-%2-"}, false},
                 {{.text = "-%1-", .namesProduct = true}, false},
                 {{.text = "---"}, false},
                 {{.text = "-"}, false},
                 {{.text = "--", .postfix = std::string_view("", 0)}, false}};
    for (const Case& c : cases) {
        EXPECT_EQ(c.entry.isSeparator(), c.separator) << c.entry.text;
        EXPECT_EQ(shownText(c.entry) == u"--", c.separator) << c.entry.text;
    }
}

// Positions are planned: what follows a lost entry does not move up.
TEST_F(MenuTest, KeepsPlannedPositions) {
    const platform::MenuHandle menu = menuOf({u"first", u"last"});
    fault::arm("InsertMenuItemW", 1, platform::kErrorNotEnoughMemory);
    MenuInserter(1000, false, bitmaps_)
        .insert(menu.get(), 1,
                {{.text = "lost", .offset = 0}, {.text = "kept", .offset = 1}, {.text = "--", .offset = 2}});
    EXPECT_EQ(dump(host::menu(menu.get())),
              "0 0 0 0 first\n0 0 0 0 last\n43 0 0 1001 kept\n43 800 0 1002 (none)\n");
}

TEST_F(MenuTest, GivesASubmenuBackAlsoWhenItHangsNowhere) {
    const struct Case {
        const char* failing;
        bool made;
        bool hung;
    } cases[] = {{"nothing", true, true}, {"InsertMenuItemW", true, false}, {"CreateMenu", false, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.failing);
        const platform::MenuHandle parent = platform::createMenu();
        fault::arm(c.failing, 1, platform::kErrorNotEnoughMemory);
        const Submenu submenu =
            MenuInserter(1000, false, bitmaps_).InsertSubmenu(parent.get(), 0, {.text = "sub"});
        EXPECT_EQ(submenu.menu != nullptr, c.made);
        EXPECT_EQ(static_cast<bool>(submenu.notHung), c.made && !c.hung);
        EXPECT_EQ(host::menu(parent.get()).items.size(), c.hung ? 1u : 0u);
    }
}

TEST_F(MenuTest, LoadsEachBitmapOnce) {
    host::UserInterface& ui = host::userInterface();
    ui.smallIconHeight = 20;
    fault::arm("LoadImageW", 1, platform::kErrorNotEnoughMemory);
    for (const int id : {-1, 229, 230, 241})
        EXPECT_EQ(bitmaps_.GetMenuBitmap(id), nullptr);
    EXPECT_EQ(BitmapCache().GetMenuBitmap(230), nullptr);
    EXPECT_EQ(host::bitmapId(bitmaps_.GetMenuBitmap(230)), 230u);
    ui.menuColor = ui.windowColor;
    for (std::uint32_t i = 0; i < 22; ++i)
        EXPECT_EQ(host::bitmapId(bitmaps_.GetMenuBitmap(230 + static_cast<int>(i) % 11)), 230 + i % 11);
    ASSERT_EQ(ui.loads.size(), 12u);  // the first without a module
    EXPECT_EQ(ui.loads[1].flags, 0x1060u);
    EXPECT_EQ(ui.loads[1].width, 20);
    EXPECT_EQ(ui.loads[1].height, 20);
    EXPECT_EQ(ui.loads[11].flags, 0x60u);
}

// A second thread that loads the same bitmap meanwhile has put it into a menu.
TEST_F(MenuTest, KeepsTheBitmapThatIsInAMenu) {
    platform::BitmapRef shown = nullptr;
    host::userInterface().duringLoad = [&] { shown = bitmaps_.GetMenuBitmap(230); };
    EXPECT_EQ(bitmaps_.GetMenuBitmap(230), shown);
    EXPECT_EQ(host::bitmapId(shown), 230u);
    EXPECT_EQ(host::userInterface().liveBitmaps, 1);
}

using MenuFactsTest = HostTest;

TEST_F(MenuFactsTest, KnowTheSystemDriveAndAskForItOnce) {
    const struct Case {
        const char* name;
        std::optional<std::u16string> windows;
        bool onZ;
    } cases[] = {
        {"on Z", u"z:\\w", true},
        {"as long as fits", u"Z:\\" + std::u16string(252, u'w'), true},
        {"too long", u"Z:\\" + std::u16string(253, u'w'), false},
        {"elsewhere", u"E:\\", false},
        {"empty", u"", false},
        {"unknown", std::nullopt, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host::setWindowsDirectory(c.windows);
        fault::resetCounts();
        SystemDrive drive;
        EXPECT_EQ(drive.holds(u"\\\\?\\Z:\\x"), c.onZ);
        EXPECT_TRUE(drive.holds(u"\\\\server\\share"));
        EXPECT_TRUE(drive.holds(u""));
        EXPECT_FALSE(drive.holds(u"D:\\"));
        EXPECT_EQ(fault::calls("GetWindowsDirectoryW"), 1u);
    }
}

}  // namespace
}  // namespace nmshell
