#include "contextmenu/menu_insertion.h"

namespace nmshell {
namespace {

// The last position there is means "at the end", and nothing comes behind it.
constexpr std::uint32_t kAtTheEnd = 0xFFFFFFFF;

platform::MenuItem item(std::uint32_t mask, const MenuEntry& entry) {
    platform::MenuItem result;
    result.mask = mask;
    result.state = entry.grayed ? platform::kStateGrayed : platform::kStateEnabled;
    return result;
}

void setText(platform::MenuItem& item, const MenuEntry& entry) {
    if (entry.isSeparator()) {
        item.type = platform::kTypeSeparator;
        return;
    }
    item.hasText = true;
    item.text = entry.text;
}

}  // namespace

platform::BitmapRef BitmapCache::GetMenuBitmap(int id) {
    if (id < kFirst || id > kLast)
        return nullptr;
    std::atomic<platform::BitmapRef>& cached = bitmaps_[static_cast<std::size_t>(id - kFirst)];
    if (const platform::BitmapRef there = cached)
        return there;
    const int side = platform::systemMetric(platform::kSmallIconHeight);
    std::uint32_t flags = platform::kLoadDefaultSize | platform::kLoadTransparent;
    if (platform::systemColor(platform::kColorWindow) != platform::systemColor(platform::kColorMenu))
        flags |= platform::kLoadMap3dColors;
    platform::BitmapHandle loaded =
        platform::loadBitmap(module_, static_cast<std::uint32_t>(id), side, side, flags);
    platform::BitmapRef there = nullptr;
    return cached.compare_exchange_strong(there, loaded.get()) ? loaded.release() : there;
}

void BitmapCache::clear() {
    for (std::atomic<platform::BitmapRef>& bitmap : bitmaps_)
        platform::BitmapHandle(bitmap.exchange(nullptr)).reset();
}

void MenuInserter::insert(platform::MenuRef menu, std::uint32_t position,
                          const std::vector<MenuEntry>& entries) {
    for (const MenuEntry& entry : entries) {
        if (entry.submenu)
            InsertSubmenu(menu, position, entry);
        else
            InsertMenuEntry(menu, position, entry);
        if (position != kAtTheEnd)
            ++position;
    }
}

bool MenuInserter::InsertMenuEntry(platform::MenuRef menu, std::uint32_t position, const MenuEntry& entry) {
    platform::MenuItem request =
        item(platform::kItemState | platform::kItemId | platform::kItemString, entry);
    request.id = entry.offset == kNoCommand ? 0 : firstId_ + entry.offset;
    setText(request, entry);
    addBitmap(request, entry);
    return platform::insertMenuItem(menu, position, request);
}

void MenuInserter::InsertSubmenu(platform::MenuRef parent, std::uint32_t position, const MenuEntry& entry) {
    platform::MenuHandle submenu = platform::createMenu();
    if (!submenu)
        return;  // an entry that opens nothing would only mislead
    platform::MenuItem request = item(
        platform::kItemState | platform::kItemId | platform::kItemSubmenu | platform::kItemString, entry);
    request.submenu = submenu.get();
    setText(request, entry);
    addBitmap(request, entry);
    const platform::MenuRef filled = submenu.get();
    if (platform::insertMenuItem(parent, position, request))
        static_cast<void>(submenu.release());  // the parent destroys it from here on
    insert(filled, 0, entry.children);
}

void MenuInserter::addBitmap(platform::MenuItem& request, const MenuEntry& entry) {
    // Deliberate: a grayed entry never shows an icon.
    if (entry.grayed || !icons_)
        return;
    if (const platform::BitmapRef bitmap = bitmaps_.GetMenuBitmap(entry.bitmap)) {
        request.mask |= platform::kItemBitmap;
        request.bitmap = bitmap;
    }
}

}  // namespace nmshell
