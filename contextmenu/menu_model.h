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
inline constexpr std::u16string_view kSeparatorText = u"--";

struct MenuEntry {
    std::u16string text;
    std::uint32_t offset = kNoCommand;  // command offset; kNoCommand for separators and submenus
    int bitmap = kNoBitmap;             // resource identifier
    bool grayed = false;
    bool submenu = false;
    std::vector<MenuEntry> children = {};  // of a submenu

    bool isSeparator() const { return text == kSeparatorText; }
};

inline MenuEntry separatorEntry() {
    return {.text = std::u16string(kSeparatorText)};
}

// The entries to add for `selection`, in order, texts looked up in `texts`; empty when nothing is to be
// added.
[[nodiscard]] std::vector<MenuEntry> buildMenu(const Selection& selection, const MenuFacts& facts,
                                               const owlkit::interlang& texts);

}  // namespace nmshell
