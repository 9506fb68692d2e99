// From the menu as a value to items of a platform menu.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "contextmenu/menu_bitmaps.h"
#include "contextmenu/menu_model.h"
#include "platform/menu.h"

namespace nmshell {

// A menu that was to be hung into another one.
struct Submenu {
    platform::MenuRef menu{};        // none when it could not be made
    platform::MenuHandle notHung{};  // the same menu when it hangs nowhere; the parent's otherwise
};

// Inserts entries into one menu and its submenus. Failures of single insertions are passed over: later
// entries still go to the positions planned for them.
class MenuInserter {
  public:
    // Identifiers are `firstId` plus the command offset. Without `icons` no entry shows a bitmap.
    MenuInserter(std::uint32_t firstId, bool icons, BitmapCache& bitmaps)
        : firstId_(firstId), icons_(icons), bitmaps_(bitmaps) {}

    // Inserts `entries` at `position` and the positions behind it; at the end for 0xFFFFFFFF.
    void insert(platform::MenuRef menu, std::uint32_t position, const std::vector<MenuEntry>& entries);

    // One item each, by InsertMenuItemW; whether it was inserted. `entry` opens no submenu.
    [[nodiscard]] bool InsertMenuEntry(platform::MenuRef menu, std::uint32_t position,
                                       const MenuEntry& entry);
    [[nodiscard]] bool InsertMenuSeparator(platform::MenuRef menu, std::uint32_t position);

    // Hangs an empty menu into `parent` under the entry's text, bitmap and state, and gives it back, also
    // when it could not be hung.
    [[nodiscard]] Submenu InsertSubmenu(platform::MenuRef parent, std::uint32_t position,
                                        const MenuEntry& entry);

  private:
    void insertAll(platform::MenuRef menu, std::uint32_t position, const std::vector<MenuEntry>& entries);
    void setText(platform::MenuItem& request, const MenuEntry& entry);
    void addBitmap(platform::MenuItem& request, const MenuEntry& entry);

    std::uint32_t firstId_;
    bool icons_;
    BitmapCache& bitmaps_;
    std::u16string text_;  // of the entry that is inserted
};

}  // namespace nmshell
