#include "platform/menu.h"

#include <gtest/gtest.h>

#include <string>

#include "testing/shown_menu.h"

namespace platform {
namespace {

using test::shown;

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
