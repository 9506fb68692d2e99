#include "tools/rightclick/menu_reader_win32.h"

#include <map>
#include <string>

#include "platform/handle.h"
#include "platform/menu.h"
#include "resources/resource.h"

namespace rightclick {
namespace {

struct ScreenTraits {
    using Type = HDC;
    static constexpr Type none() { return nullptr; }
    static void close(Type screen) noexcept { ReleaseDC(nullptr, screen); }
};

// Width, height and 32-bit pixels; empty for what is no bitmap, as the system's predefined ones.
using Pixels = std::vector<std::uint32_t>;

Pixels pixelsOf(HBITMAP bitmap) {
    BITMAP facts;
    if (!bitmap || GetObjectW(bitmap, sizeof facts, &facts) != sizeof facts)
        return {};
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = facts.bmWidth;
    info.bmiHeader.biHeight = facts.bmHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    const auto width = static_cast<std::uint32_t>(facts.bmWidth);
    const auto height = static_cast<std::uint32_t>(facts.bmHeight);
    Pixels pixels(2 + std::size_t{width} * height);
    pixels[0] = width;
    pixels[1] = height;
    const platform::UniqueHandle<ScreenTraits> screen(GetDC(nullptr));
    if (GetDIBits(screen.get(), bitmap, 0, height, pixels.data() + 2, &info, DIB_RGB_COLORS) == 0)
        return {};
    return pixels;
}

class BitmapNames {
  public:
    explicit BitmapNames(HMODULE module) {
        const int side = GetSystemMetrics(SM_CYSMICON);
        UINT flags = LR_DEFAULTSIZE | LR_LOADTRANSPARENT;
        if (GetSysColor(COLOR_WINDOW) != GetSysColor(COLOR_MENU))
            flags |= LR_LOADMAP3DCOLORS;
        for (int id = IDB_FIRST; id <= IDB_LAST; ++id) {
            const platform::BitmapHandle bitmap =
                platform::loadBitmap(module, static_cast<std::uint32_t>(id), side, side, flags);
            names_.emplace(pixelsOf(static_cast<HBITMAP>(bitmap.get())), id);
        }
    }

    int find(HBITMAP bitmap) const {
        const Pixels pixels = pixelsOf(bitmap);
        const auto found = pixels.empty() ? names_.end() : names_.find(pixels);
        return found == names_.end() ? kOtherBitmap : found->second;
    }

  private:
    std::map<Pixels, int> names_;
};

std::u16string textOf(HMENU menu, UINT position) {
    MENUITEMINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    if (!GetMenuItemInfoW(menu, position, TRUE, &info))
        return {};
    std::u16string text(info.cch + 1, u'\0');
    info.dwTypeData = platform::wide(text.data());
    info.cch = static_cast<UINT>(text.size());
    const bool read = GetMenuItemInfoW(menu, position, TRUE, &info) != FALSE;
    text.resize(read ? info.cch : 0);
    return text;
}

std::vector<MenuEntry> read(HMENU menu, UINT position, const BitmapNames& names) {
    std::vector<MenuEntry> entries;
    const int count = GetMenuItemCount(menu);
    for (UINT i = position; count > 0 && i < static_cast<UINT>(count); ++i) {
        MENUITEMINFOW info = {};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_BITMAP;
        if (!GetMenuItemInfoW(menu, i, TRUE, &info))
            continue;
        MenuEntry& entry = entries.emplace_back();
        entry.text = textOf(menu, i);
        entry.separator = (info.fType & MFT_SEPARATOR) != 0;
        entry.submenu = info.hSubMenu != nullptr;
        entry.id = entry.submenu ? 0 : info.wID;  // some systems report the submenu's handle there
        entry.grayed = (info.fState & MFS_GRAYED) != 0;
        entry.bitmap = info.hbmpItem ? names.find(info.hbmpItem) : kNoBitmap;
        if (info.hSubMenu)
            entry.children = read(info.hSubMenu, 0, names);
    }
    return entries;
}

}  // namespace

std::vector<MenuEntry> readMenuEntries(HMENU menu, UINT position, HMODULE module) {
    return read(menu, position, BitmapNames(module));
}

}  // namespace rightclick
