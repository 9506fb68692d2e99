// Reading a menu back from the system.
#pragma once

#include <vector>

#include "platform/com.h"
#include "tools/rightclick/menu_entry.h"

namespace rightclick {

// The items of `menu` from `position` on, submenus included. A bitmap is known by its pixels: it is the
// bitmap resource of `module` that looks alike when it is loaded in the same size with the same flags.
std::vector<MenuEntry> readMenuEntries(HMENU menu, UINT position, HMODULE module);

}  // namespace rightclick
