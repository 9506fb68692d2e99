// The menu as a value: what will be added for a selection, before any platform menu is touched.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "contextmenu/commands.h"
#include "contextmenu/selection.h"
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
    std::vector<MenuEntry> children;  // of a submenu

    bool isSeparator() const { return text == kSeparatorText; }
};

enum class RecycleBinState { Unknown = -1, Empty = 0, HoldsItems = 1 };

// The recycle bin below `root` (such as u"C:\\"), or of all drives for the empty root. SHQueryRecycleBinW.
RecycleBinState QueryRecycleBinState(const std::u16string& root);

// What the system says about a selection; only the facts that the selection's kind needs are asked for.
struct MenuFacts {
    PathType firstPathType = PathType::Unreadable;          // one file or folder
    bool firstPathOnSystemDrive = true;                     // drives
    RecycleBinState recycleBin = RecycleBinState::Unknown;  // one drive, or the Recycle Bin
    std::uint32_t elevation = 0;  // drives and the Recycle Bin: 0, 1 limited, 2 full
};
MenuFacts gatherFacts(const Selection& selection, SystemDrive& systemDrive);

// The entries to add for `selection`, in order, texts looked up in `texts`; empty when nothing is to be
// added.
std::vector<MenuEntry> buildMenu(const Selection& selection, const MenuFacts& facts,
                                 const owlkit::interlang& texts);

}  // namespace nmshell
