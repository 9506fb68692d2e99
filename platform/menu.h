// Menus, menu bitmaps, and the few user-interface facts that menus need. Each function is the platform call
// named beside it, with its real arguments.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/error.h"
#include "platform/handle.h"
#include "platform/module.h"

// What the SDK's HMENU and HBITMAP point to.
struct HMENU__;
struct HBITMAP__;

namespace platform {

// A menu or a bitmap that somebody else owns (HMENU, HBITMAP).
using MenuRef = HMENU__*;
using BitmapRef = HBITMAP__*;

struct MenuTraits {
    using Type = MenuRef;
    static constexpr Type none() { return nullptr; }
    static void close(Type menu) noexcept;  // DestroyMenu: takes the submenus that hang in it along
};
using MenuHandle = UniqueHandle<MenuTraits>;

struct BitmapTraits {
    using Type = BitmapRef;
    static constexpr Type none() { return nullptr; }
    static void close(Type bitmap) noexcept;  // DeleteObject
};
using BitmapHandle = UniqueHandle<BitmapTraits>;

// MENUITEMINFOW masks, types and states.
inline constexpr std::uint32_t kItemState = 0x1;        // MIIM_STATE
inline constexpr std::uint32_t kItemId = 0x2;           // MIIM_ID
inline constexpr std::uint32_t kItemSubmenu = 0x4;      // MIIM_SUBMENU
inline constexpr std::uint32_t kItemString = 0x40;      // MIIM_STRING
inline constexpr std::uint32_t kItemBitmap = 0x80;      // MIIM_BITMAP
inline constexpr std::uint32_t kTypeString = 0x0;       // MFT_STRING
inline constexpr std::uint32_t kTypeSeparator = 0x800;  // MFT_SEPARATOR
inline constexpr std::uint32_t kStateEnabled = 0x0;     // MFS_ENABLED
inline constexpr std::uint32_t kStateGrayed = 0x3;      // MFS_GRAYED, which includes MFS_DISABLED

// The members of MENUITEMINFOW that are used. `text` is passed on only when `hasText` is set.
struct MenuItem {
    std::uint32_t mask = 0;
    std::uint32_t type = kTypeString;
    std::uint32_t state = kStateEnabled;
    std::uint32_t id = 0;
    MenuRef submenu = nullptr;
    BitmapRef bitmap = nullptr;
    bool hasText = false;
    std::u16string_view text;  // must be followed by a zero character
};

// CreateMenu: an empty menu, or none when the system has no more of them.
MenuHandle createMenu();

// InsertMenuItemW by position; a position behind the last item appends. The menu takes a submenu over when
// this succeeds; a bitmap stays the caller's.
Status insertMenuItem(MenuRef menu, std::uint32_t position, const MenuItem& item);

// LoadImageW(IMAGE_BITMAP) of a resource of `module`, `width` × `height` pixels; none on failure.
BitmapHandle loadBitmap(ModuleRef module, std::uint32_t id, int width, int height, std::uint32_t flags);

inline constexpr std::uint32_t kLoadDefaultSize = 0x40;    // LR_DEFAULTSIZE
inline constexpr std::uint32_t kLoadTransparent = 0x20;    // LR_LOADTRANSPARENT
inline constexpr std::uint32_t kLoadMap3dColors = 0x1000;  // LR_LOADMAP3DCOLORS

inline constexpr int kSmallIconHeight = 50;  // SM_CYSMICON
int systemMetric(int index);                 // GetSystemMetrics

inline constexpr int kColorMenu = 4;    // COLOR_MENU
inline constexpr int kColorWindow = 5;  // COLOR_WINDOW
std::uint32_t systemColor(int index);   // GetSysColor, 0x00BBGGRR

// GetCursorPos, in screen coordinates. A failure leaves both untouched.
Status cursorPosition(std::int32_t& x, std::int32_t& y);

}  // namespace platform
