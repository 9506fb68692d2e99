#include "platform/menu.h"

#include <type_traits>

#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kItemState == MIIM_STATE);
static_assert(kItemId == MIIM_ID);
static_assert(kItemSubmenu == MIIM_SUBMENU);
static_assert(kItemString == MIIM_STRING);
static_assert(kItemBitmap == MIIM_BITMAP);
static_assert(kTypeString == MFT_STRING);
static_assert(kTypeSeparator == MFT_SEPARATOR);
static_assert(kStateEnabled == MFS_ENABLED);
static_assert(kStateGrayed == MFS_GRAYED);
static_assert(kLoadDefaultSize == LR_DEFAULTSIZE);
static_assert(kLoadTransparent == LR_LOADTRANSPARENT);
static_assert(kLoadMap3dColors == LR_LOADMAP3DCOLORS);
static_assert(kSmallIconHeight == SM_CYSMICON);
static_assert(kColorMenu == COLOR_MENU);
static_assert(kColorWindow == COLOR_WINDOW);
static_assert(sizeof(MENUITEMINFOW) == 80);
static_assert(std::is_same_v<MenuRef, HMENU>);
static_assert(std::is_same_v<BitmapRef, HBITMAP>);
static_assert(std::is_same_v<ModuleRef, HINSTANCE>);

void MenuTraits::close(Type menu) noexcept {
    DestroyMenu(menu);
}

void BitmapTraits::close(Type bitmap) noexcept {
    DeleteObject(bitmap);
}

MenuHandle createMenu() {
    return MenuHandle(CreateMenu());
}

Status insertMenuItem(MenuRef menu, std::uint32_t position, const MenuItem& item) {
    MENUITEMINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = item.mask;
    info.fType = item.type;
    info.fState = item.state;
    info.wID = item.id;
    info.hSubMenu = item.submenu;
    info.hbmpItem = item.bitmap;
    if (item.hasText) {
        // The structure is shared with reading calls and so not const; inserting only reads the text.
        info.dwTypeData = const_cast<wchar_t*>(wide(item.text.data()));
        info.cch = static_cast<UINT>(item.text.size());
    }
    return outcome(InsertMenuItemW(menu, position, TRUE, &info));
}

BitmapHandle loadBitmap(ModuleRef module, std::uint32_t id, int width, int height, std::uint32_t flags) {
    const HANDLE loaded = LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_BITMAP, width, height, flags);
    return BitmapHandle(static_cast<HBITMAP>(loaded));
}

int systemMetric(int index) {
    return GetSystemMetrics(index);
}

std::uint32_t systemColor(int index) {
    return GetSysColor(index);
}

Status cursorPosition(std::int32_t& x, std::int32_t& y) {
    POINT point;
    if (!GetCursorPos(&point))
        return lastError();
    x = point.x;
    y = point.y;
    return kSuccess;
}

}  // namespace platform
