// The entries of a selection below one entry, which is all that the first level of the menu has room for.
#pragma once

#include "contextmenu/menu_model.h"
#include "platform/com.h"

namespace nmshell {

// The menu of `selection` as buildMenu gives it, with the product's own entry as the root: the other entries
// come first among its children. Without a selection an entry without text and children.
MenuEntry commandTree(const Selection& selection, const MenuFacts& facts, const owlkit::interlang& texts);

// The fixed name of a command in the tree: one for each command of the table, one for the root, one for all
// other submenus, and none (all zero) for separators.
GUID canonicalName(const MenuEntry& entry, bool isRoot);

}  // namespace nmshell
