// Why the menu does not appear, and in which language it does.
#pragma once

#include <cstddef>
#include <string>

#include "contextmenu/selection.h"

namespace tools {

// The first reason that the registry gives, as one line: the class for `kind` is not registered (asked only
// when `registered` is set), the extension is not approved or is switched off. Empty when all of that is in
// order.
std::string whyUnavailable(nmshell::SelectionKind kind, bool registered);

// What the module finds in the folder "langs" beside it, for the current user.
struct Languages {
    std::u16string folder;   // with a separator at its end
    std::u16string failure;  // the loader's own text, several lines; while there is one, no menu is shown
    std::size_t count = 0;
    std::u16string setting;    // of the user; empty when there is none
    bool settingKnown = true;  // whether a file has that language
    std::u16string regional;   // that of the user's regional format, which counts without a setting
    std::u16string shown;      // the language that the menu is in; empty when there is none
    std::u16string shownName;  // its own name for itself
};

// Loads the language files as `module`, a full path, would load them now.
Languages inspectLanguages(const std::u16string& module);

// The failure in one line; empty when there is none.
std::string whyNoTexts(const Languages& languages);

}  // namespace tools
