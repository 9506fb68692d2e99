// The menu as a value: what will be added for a selection, before any platform menu is touched.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "contextmenu/commands.h"
#include "contextmenu/menu_facts.h"
#include "contextmenu/selection.h"
#include "foundation/process/elevation.h"
#include "lang/interlang.h"

namespace nmshell {

inline constexpr std::uint32_t kNoCommand = 0xFFFFFFFF;

// Put in place of %1 in the two entries that name the product.
inline constexpr std::u16string_view kProductName = u"Nullmark";

// An entry with this text is a separator, wherever the text comes from.
inline constexpr std::string_view kSeparatorText = "--";

// The texts are UTF-8. They lie in the table that was asked, until it is cleared, or in the program.
struct MenuEntry {
    std::string_view text;
    std::string_view postfix = {};      // shown behind the text after a blank, unless it lies nowhere
    bool namesProduct = false;          // by %1 in the text, and %2 is left out
    std::uint32_t offset = kNoCommand;  // command offset; kNoCommand for separators and submenus
    int bitmap = kNoBitmap;             // resource identifier
    bool grayed = false;
    bool submenu = false;
    std::vector<MenuEntry> children = {};  // of a submenu

    bool isSeparator() const;  // whether the text that is shown is kSeparatorText; asks for no memory
};

inline MenuEntry separatorEntry() {
    return {.text = kSeparatorText};
}

// Appends what a menu shows. Asks for no memory when `text` has room for so many more units as the second
// gives.
void appendShownText(const MenuEntry& entry, std::u16string& text);
std::size_t mostShownUnits(const MenuEntry& entry);
inline std::u16string shownText(const MenuEntry& entry) {
    std::u16string text;
    appendShownText(entry, text);
    return text;
}

// The entries to add for `selection`, in order, texts looked up in `texts`; empty when nothing is to be
// added.
[[nodiscard]] std::vector<MenuEntry> buildMenu(const Selection& selection, const MenuFacts& facts,
                                               const owlkit::interlang& texts);

}  // namespace nmshell
