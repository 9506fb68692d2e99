#include <gtest/gtest.h>

#include "platform/win32/win32_api.h"
#include "testing/shown_menu.h"

namespace test {

std::u16string shown(platform::MenuRef menu) {
    std::u16string text;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        char16_t name[64] = {};
        MENUITEMINFOW info = {};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_STRING | MIIM_SUBMENU;
        info.dwTypeData = platform::wide(name);
        info.cch = 64;
        EXPECT_TRUE(GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info));
        std::optional<std::u16string> below;
        if (info.hSubMenu)
            below = shown(info.hSubMenu);
        text += shownItem(info.fType == platform::kTypeSeparator ? u"--" : name,
                          info.fState == platform::kStateGrayed, below);
    }
    return text;
}

}  // namespace test
