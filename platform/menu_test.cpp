#include "platform/menu.h"

#include <gtest/gtest.h>

#include <string>

#ifdef _WIN32
#include "platform/win32/win32_api.h"
#else
#include "platform/host/menu_host.h"
#endif

namespace platform {
namespace {

// What a menu shows: each item followed by a bar, a grayed one in brackets, a submenu with its items in
// braces.
#ifdef _WIN32
std::u16string shown(MenuRef menu) {
    std::u16string text;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        char16_t name[64] = {};
        MENUITEMINFOW info = {};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_STRING | MIIM_SUBMENU;
        info.dwTypeData = wide(name);
        info.cch = 64;
        EXPECT_TRUE(GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info));
        std::u16string item = info.fType == kTypeSeparator ? u"--" : name;
        if (info.fState == kStateGrayed)
            item = u"[" + item + u"]";
        if (info.hSubMenu)
            item += u"{" + shown(info.hSubMenu) + u"}";
        text += item + u"|";
    }
    return text;
}
#else
std::u16string shown(const host::Menu& menu) {
    std::u16string text;
    for (const host::RecordedItem& recorded : menu.items) {
        std::u16string item = recorded.request.type == kTypeSeparator ? u"--" : recorded.text;
        if (recorded.request.state == kStateGrayed)
            item = u"[" + item + u"]";
        if (recorded.submenu)
            item += u"{" + shown(*recorded.submenu) + u"}";
        text += item + u"|";
    }
    return text;
}
std::u16string shown(MenuRef menu) {
    return shown(host::menu(menu));
}
#endif

constexpr std::uint32_t kPlain = kItemState | kItemId | kItemString;

MenuItem item(std::u16string_view text, std::uint32_t state = kStateEnabled) {
    return {.mask = kPlain, .state = state, .hasText = true, .text = text};
}

TEST(MenuContract, ItemsStandWhereTheyWerePut) {
    const struct Case {
        const char* name;
        std::uint32_t position;
        const char16_t* shown;
    } cases[] = {
        {"first", 0, u"new|a|b|"},
        {"between", 1, u"a|new|b|"},
        {"last", 2, u"a|b|new|"},
        {"behind the last", 9, u"a|b|new|"},
        {"at the end", 0xFFFFFFFF, u"a|b|new|"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MenuHandle menu = createMenu();
        EXPECT_EQ(insertMenuItem(menu.get(), 0, item(u"b")), kSuccess);
        EXPECT_EQ(insertMenuItem(menu.get(), 0, item(u"a")), kSuccess);
        EXPECT_EQ(insertMenuItem(menu.get(), c.position, item(u"new")), kSuccess);
        EXPECT_EQ(shown(menu.get()), c.shown);
    }
}

TEST(MenuContract, SubmenusGoAlongAndTextsAreCopied) {
    MenuHandle below = createMenu();
    const MenuHandle menu = createMenu();
    std::u16string text = u"old";
    EXPECT_EQ(insertMenuItem(below.get(), 0, item(text, kStateGrayed)), kSuccess);
    text = u"new";
    MenuItem parent = item(u"below");
    parent.mask |= kItemSubmenu;
    parent.submenu = below.get();
    EXPECT_EQ(insertMenuItem(menu.get(), 0, parent), kSuccess);
    const MenuRef filled = below.release();
    // What is put into a submenu that already hangs in its parent shows there.
    EXPECT_EQ(insertMenuItem(filled, 1, {.mask = kPlain, .type = kTypeSeparator}), kSuccess);
    EXPECT_EQ(shown(menu.get()), u"below{[old]|--|}|");
    EXPECT_FALSE(insertMenuItem(nullptr, 0, item(u"x")).succeeded());  // Wine's code is another one
}

TEST(MenuContract, FactsOfTheScreen) {
    EXPECT_GT(systemMetric(kSmallIconHeight), 0);
    EXPECT_EQ(systemMetric(9999), 0);
    EXPECT_EQ(systemColor(kColorMenu) >> 24, 0u);
    std::int32_t x = -1, y = -1;
    EXPECT_EQ(cursorPosition(x, y), kSuccess);
    EXPECT_FALSE(loadBitmap(nullptr, 230, 16, 16, kLoadDefaultSize));
}

}  // namespace
}  // namespace platform
