#include "contextmenu/menu_insertion.h"

#include <algorithm>
#include <sstream>

#include "tests/host_fixture.h"

namespace nmshell {
namespace {

// One line an item: mask, type, state, identifier, text, resource of the bitmap; submenus are indented.
std::vector<std::string> dump(const host::Menu& menu, const std::string& indent = "") {
    std::vector<std::string> lines;
    for (const host::RecordedItem& item : menu.items) {
        std::ostringstream line;
        line << indent << std::hex << item.request.mask << ' ' << item.request.type << ' '
             << item.request.state << ' ' << std::dec << item.request.id << ' '
             << (item.request.hasText ? platform::toHostName(item.text) : "(none)");
        if (item.request.mask & platform::kItemBitmap)
            line << " #" << host::bitmapId(item.request.bitmap);
        lines.push_back(line.str());
        EXPECT_EQ((item.request.mask & platform::kItemSubmenu) != 0, item.submenu != nullptr);
        if (item.submenu)
            std::ranges::copy(dump(*item.submenu, indent + " "), std::back_inserter(lines));
    }
    return lines;
}

std::vector<std::string> linesOf(std::initializer_list<std::string_view> texts) {
    std::vector<std::string> lines;
    for (const std::string_view text : texts)
        for (std::istringstream in{std::string(text)}; in;)
            if (std::string line; std::getline(in, line) && !line.empty())
                lines.push_back(line);
    return lines;
}

constexpr std::string_view kProduct = R"(
c7 0 0 0 Nullmark #236
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

class MenuInsertionTest : public HostTest {
  protected:
    MenuInsertionTest() {
        texts_.BeginLoad();
        texts_.SetLanguages(u"en", u"");
        texts_.SetLanguage(u"en");
        for (const auto& [key, text] : {std::pair{u"CXT_MENU_PARENT", u"%1"},
                                        std::pair{u"CXT_MENU_ABOUT", u"%1? %1!"}}) {
            texts_.SetKey(key);
            texts_.AddText(text);
        }
        texts_.EndLoad();
    }

    std::vector<MenuEntry> entries(SelectionKind kind) const {
        const MenuFacts facts{PathType::File, true, RecycleBinState::Empty, owlkit::kElevationFull};
        return buildMenu({kind, 1, {}}, facts, texts_);
    }

    std::vector<std::string> insertedInto(platform::MenuRef menu, std::uint32_t position, SelectionKind kind,
                                          bool icons = true) {
        MenuInserter(1000, icons, bitmaps_).insert(menu, position, entries(kind));
        return dump(host::menu(menu));
    }

    owlkit::interlang texts_;
    BitmapCache bitmaps_;
};

TEST_F(MenuInsertionTest, InsertsTheWholeTreeAtItsPosition) {
    const struct {
        SelectionKind kind;
        std::string_view own;
    } kCases[] = {
        {SelectionKind::Files, "43 800 0 0 (none)\nc3 0 0 1000 CXT_MENU_WIPE_FILE #230"},
        {SelectionKind::Drives, R"(
43 800 0 0 (none)
43 0 3 1001 CXT_MENU_WIPE_DRIVE
c3 0 0 1002 CXT_MENU_CLEAN_DRIVE #232
47 0 3 0 CXT_MENU_WIPE_DRIVE_TRASH CXT_MENU_EMPTY_POSTFIX
 43 0 3 1003 CXT_MENU_USER_TRASH
 c3 0 0 1005 CXT_MENU_ADMIN_TRASH #235)"},
        {SelectionKind::RecycleBin, R"(
43 800 0 0 (none)
47 0 3 0 CXT_MENU_WIPE_ALL_TRASH
 43 0 3 1004 CXT_MENU_USER_TRASH
 c3 0 0 1006 CXT_MENU_ADMIN_TRASH #235)"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.own);
        const platform::MenuHandle menu = platform::createMenu();
        for (const std::u16string_view text : {u"before", u"behind"})
            platform::insertMenuItem(menu.get(), 9, {.hasText = true, .text = text});
        EXPECT_EQ(insertedInto(menu.get(), 1, c.kind),
                  linesOf({"0 0 0 0 before", c.own, kProduct, "0 0 0 0 behind"}));
        const platform::MenuHandle plain = platform::createMenu();
        for (const std::string& line : insertedInto(plain.get(), 0, c.kind, false))
            EXPECT_EQ(line.find_first_of("c#"), std::string::npos) << line;
    }
}

TEST_F(MenuInsertionTest, TakesATextLikeASeparatorForOne) {
    const platform::MenuHandle menu = platform::createMenu();
    MenuInserter(1, false, bitmaps_)
        .insert(menu.get(), 0, {{.text = u"--", .offset = 2}, {.text = u"--", .submenu = true}});
    EXPECT_EQ(dump(host::menu(menu.get())), linesOf({"43 800 0 3 (none)\n47 800 0 0 (none)"}));
}

TEST_F(MenuInsertionTest, GoesOnAfterFailures) {
    std::vector<std::string> whole;
    for (const char* const operation : {"none", "CreateMenu", "InsertMenuItemW", "LoadImageW"}) {
        for (std::uint32_t n = 1;; ++n) {
            SCOPED_TRACE(operation + std::to_string(n));
            fault::disarm();
            const platform::MenuHandle menu = platform::createMenu();
            BitmapCache bitmaps;
            fault::arm(operation, n, platform::kErrorNotEnoughMemory);
            MenuInserter(1000, true, bitmaps).insert(menu.get(), 0, entries(SelectionKind::Drives));
            std::vector<std::string> lines = dump(host::menu(menu.get()));
            if (whole.empty())
                whole = lines;
            std::size_t kept = 0;
            for (const std::string& line : whole) {
                const bool plain = kept < lines.size() && lines[kept].find('#') == std::string::npos;
                std::string same = line;  // without the bitmap when that could not be loaded
                if (plain && same.find('#') != std::string::npos)
                    same.replace(same.find_first_of('c'), 1, "4").erase(same.find(" #"));
                kept += kept < lines.size() && lines[kept] == same;
            }
            EXPECT_EQ(kept, lines.size());
            EXPECT_EQ(lines == whole, !fault::fired());
            EXPECT_LE(whole.size() - lines.size(), 10u);  // the product submenu at most
            if (!fault::fired())
                break;
        }
    }
}

TEST_F(MenuInsertionTest, LoadsEachBitmapOnce) {
    host::UserInterface& ui = host::userInterface();
    ui.smallIconHeight = 20;
    for (const int id : {-1, 0, 229, 241})
        EXPECT_EQ(bitmaps_.GetMenuBitmap(id), nullptr);
    EXPECT_TRUE(ui.loads.empty());
    fault::arm("LoadImageW", 1, platform::kErrorNotEnoughMemory);
    EXPECT_EQ(bitmaps_.GetMenuBitmap(230), nullptr);
    ui.menuColor = ui.windowColor;
    for (int id = 230; id <= 240; ++id) {
        const platform::BitmapRef bitmap = bitmaps_.GetMenuBitmap(id);
        EXPECT_EQ(host::bitmapId(bitmap), static_cast<std::uint32_t>(id));
        EXPECT_EQ(bitmaps_.GetMenuBitmap(id), bitmap);
    }
    ASSERT_EQ(ui.loads.size(), 12u);
    for (std::size_t i = 0; i < ui.loads.size(); ++i) {
        EXPECT_EQ(ui.loads[i].flags, i == 0 ? 0x1060u : 0x60u);
        EXPECT_EQ(ui.loads[i].width, 20);
        EXPECT_EQ(ui.loads[i].height, 20);
    }
    bitmaps_.clear();
    EXPECT_EQ(ui.liveBitmaps, 0);
    EXPECT_NE(bitmaps_.GetMenuBitmap(240), nullptr);
}

}  // namespace
}  // namespace nmshell
