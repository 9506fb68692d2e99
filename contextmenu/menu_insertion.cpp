#include "contextmenu/menu_insertion.h"

#include <algorithm>
#include <utility>

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

std::size_t longestText(const std::vector<MenuEntry>& entries) {
    std::size_t longest = 0;
    for (const MenuEntry& entry : entries)
        longest = std::max({longest, mostShownUnits(entry), longestText(entry.children)});
    return longest;
}

}  // namespace

void MenuInserter::insert(platform::MenuRef menu, std::uint32_t position,
                          const std::vector<MenuEntry>& entries) {
    // Should memory run out, then before the menu has some of the entries.
    text_.reserve(longestText(entries));
    insertAll(menu, position, entries);
}

void MenuInserter::insertAll(platform::MenuRef menu, std::uint32_t position,
                             const std::vector<MenuEntry>& entries) {
    // What could not be inserted is passed over: the rest of the menu is worth having.
    for (const MenuEntry& entry : entries) {
        if (entry.submenu) {
            if (const Submenu submenu = InsertSubmenu(menu, position, entry); submenu.menu)
                insertAll(submenu.menu, 0, entry.children);
        } else if (entry.isSeparator() && entry.offset == kNoCommand) {
            static_cast<void>(InsertMenuSeparator(menu, position));
        } else {
            static_cast<void>(InsertMenuEntry(menu, position, entry));
        }
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
    return platform::insertMenuItem(menu, position, request).succeeded();
}

bool MenuInserter::InsertMenuSeparator(platform::MenuRef menu, std::uint32_t position) {
    return InsertMenuEntry(menu, position, separatorEntry());
}

Submenu MenuInserter::InsertSubmenu(platform::MenuRef parent, std::uint32_t position,
                                    const MenuEntry& entry) {
    platform::MenuHandle made = platform::createMenu();
    Submenu submenu{made.get(), {}};
    if (!made)
        return submenu;  // an entry that opens nothing would only mislead
    platform::MenuItem request = item(
        platform::kItemState | platform::kItemId | platform::kItemSubmenu | platform::kItemString, entry);
    request.submenu = submenu.menu;
    setText(request, entry);
    addBitmap(request, entry);
    if (platform::insertMenuItem(parent, position, request).succeeded())
        static_cast<void>(made.release());  // the parent destroys it from here on
    submenu.notHung = std::move(made);
    return submenu;
}

void MenuInserter::setText(platform::MenuItem& request, const MenuEntry& entry) {
    if (entry.isSeparator()) {
        request.type = platform::kTypeSeparator;
        return;
    }
    text_.clear();
    appendShownText(entry, text_);
    request.hasText = true;
    request.text = text_;
}

void MenuInserter::addBitmap(platform::MenuItem& request, const MenuEntry& entry) {
    // A grayed entry never shows an icon: bitmaps are not drawn gray, and it would look as if it could be
    // chosen.
    if (entry.grayed || !icons_)
        return;
    if (const platform::BitmapRef bitmap = bitmaps_.GetMenuBitmap(entry.bitmap)) {
        request.mask |= platform::kItemBitmap;
        request.bitmap = bitmap;
    }
}

}  // namespace nmshell
