// The menu as it will look, in a terminal.
#pragma once

#include <string>

#include "contextmenu/menu_model.h"

namespace translators {

// One line an entry, submenus indented below their entry. With `escapeSequences` accelerators are underlined
// and grayed entries dimmed; without, an accelerator stands between low lines, as in _O_ptions. Grayed
// entries say so either way.
std::string drawMenu(const std::vector<nmshell::MenuEntry>& entries, bool escapeSequences);

}  // namespace translators
