#include "platform/menu.h"

#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kItemString == MIIM_STRING && kItemBitmap == MIIM_BITMAP && kItemSubmenu == MIIM_SUBMENU);
static_assert(kTypeSeparator == MFT_SEPARATOR && kStateGrayed == MFS_GRAYED);
static_assert(kLoadMap3dColors == LR_LOADMAP3DCOLORS && kLoadTransparent == LR_LOADTRANSPARENT);
static_assert(kSmallIconHeight == SM_CYSMICON && kColorMenu == COLOR_MENU && kColorWindow == COLOR_WINDOW);

void MenuTraits::close(Type menu) noexcept {
    DestroyMenu(static_cast<HMENU>(menu));
}

void BitmapTraits::close(Type bitmap) noexcept {
    DeleteObject(static_cast<HBITMAP>(bitmap));
}

MenuHandle createMenu() {
    return MenuHandle(CreateMenu());
}

bool insertMenuItem(MenuRef menu, std::uint32_t position, const MenuItem& item) {
    MENUITEMINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = item.mask;
    info.fType = item.type;
    info.fState = item.state;
    info.wID = item.id;
    info.hSubMenu = static_cast<HMENU>(item.submenu);
    info.hbmpItem = static_cast<HBITMAP>(item.bitmap);
    if (item.hasText) {
        // The structure is shared with reading calls and so not const; inserting only reads the text.
        info.dwTypeData = const_cast<wchar_t*>(wide(item.text.data()));
        info.cch = static_cast<UINT>(item.text.size());
    }
    return InsertMenuItemW(static_cast<HMENU>(menu), position, TRUE, &info) != FALSE;
}

BitmapHandle loadBitmap(void* module, std::uint32_t id, int width, int height, std::uint32_t flags) {
    return BitmapHandle(
        LoadImageW(static_cast<HINSTANCE>(module), MAKEINTRESOURCEW(id), IMAGE_BITMAP, width, height, flags));
}

int systemMetric(int index) {
    return GetSystemMetrics(index);
}

std::uint32_t systemColor(int index) {
    return GetSysColor(index);
}

bool cursorPosition(std::int32_t& x, std::int32_t& y) {
    POINT point;
    if (!GetCursorPos(&point))
        return false;
    x = point.x;
    y = point.y;
    return true;
}

}  // namespace platform
