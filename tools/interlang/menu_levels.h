// The entries that stand side by side in the menu. The menu is built for every selection and every state of
// the system, so that nothing about its structure is known here.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "contextmenu/menu_model.h"

namespace translators {

struct LevelEntry {
    // Of the entry's text; empty for an entry that has none.
    std::u16string key;
    // As the menu shows it, the product's name put in and a postfix appended.
    std::u16string text;
    std::u16string postfixKey;  // of the postfix, if there is one
    std::uint32_t offset;       // of the command; nmshell::kNoCommand for a submenu
};

struct MenuLevel {
    nmshell::SelectionKind kind;
    std::u16string parentKey;         // of the entry that opens it; empty for the menu itself
    std::vector<LevelEntry> entries;  // without separators
};

// Every level of every menu, built from `texts` in its active language; menus that take the same keys count
// once.
std::vector<MenuLevel> menuLevels(const owlkit::interlang& texts);

// The keys of all texts that the program asks for: those of the menus and the help texts.
std::set<std::u16string> programKeys();

// The accelerator of a menu text, in lower case: the character behind its last single '&'. 0 when there is
// none.
char16_t accelerator(std::u16string_view text);

}  // namespace translators
