// From the menu as a value to items of a platform menu.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

#include "contextmenu/menu_model.h"
#include "platform/menu.h"

namespace nmshell {

// The bitmaps of the module, each loaded on first use and kept for the life of the process. Of two threads
// that load the same one at the same moment both get the one that was there first: a menu may show it
// already.
class BitmapCache {
  public:
    static constexpr int kFirst = 230;
    static constexpr int kLast = 240;

    // `module` is the module whose resources hold the bitmaps (HINSTANCE).
    explicit BitmapCache(void* module = nullptr) : module_(module) {}
    BitmapCache(const BitmapCache&) = delete;
    BitmapCache& operator=(const BitmapCache&) = delete;
    ~BitmapCache() { clear(); }

    void setModule(void* module) { module_ = module; }

    // The bitmap of a resource identifier at the size of a small icon; none outside kFirst..kLast or when it
    // cannot be loaded, which is tried again at the next call. The cache keeps the bitmap.
    platform::BitmapRef GetMenuBitmap(int id);

    // Deletes every bitmap.
    void clear();

  private:
    void* module_;
    std::array<std::atomic<platform::BitmapRef>, kLast - kFirst + 1> bitmaps_ = {};  // owned
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

  private:
    bool InsertMenuEntry(platform::MenuRef menu, std::uint32_t position, const MenuEntry& entry);
    void InsertSubmenu(platform::MenuRef parent, std::uint32_t position, const MenuEntry& entry);
    void addBitmap(platform::MenuItem& item, const MenuEntry& entry);

    std::uint32_t firstId_;
    bool icons_;
    BitmapCache& bitmaps_;
};

}  // namespace nmshell
