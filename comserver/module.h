// What the module keeps for the whole process.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contextmenu/handover_file.h"
#include "contextmenu/menu_bitmaps.h"
#include "contextmenu/menu_facts.h"
#include "lang/interlang.h"

namespace nmshell {

// How a server loads its texts.
struct TextLoading {
    std::u16string_view primary = u"en";  // the language to fall back to; empty for none
    bool evenSwitchedOff = false;         // for objects that ask themselves whether the extension is on
};

// The DLL has one; tests make their own. Nothing in here is locked, and the counts and the flag are plain:
// one thread makes and uses each object, but windows of the shell are threads of their own, which
// share all of this. What they may do at the same moment while the language stays as it is: everything; what
// is filled on first use keeps what came first, and a count may lose a step. A class object that brings
// another language writes the table, and a menu that another thread builds at that moment is not guarded
// against it.
struct Module {
    owlkit::interlang texts;
    bool languageLoaded = false;         // every language file was read; without it no menu is shown
    std::int32_t ModuleObjectCount = 0;  // class objects and what they made
    bool recycleBinMenuLive = false;     // a Recycle Bin menu exists; while it does, no object adds anything
    HandoverFiles handover{u".nmark"};   // of every launcher
    SystemDrive systemDrive;
    BitmapCache bitmaps;
    std::u16string file;    // of the module, with its folder
    std::u16string folder;  // of the module, with a trailing separator

    // Remembers the module and its folder. Unless the extension is switched off and that matters, loads every
    // language file of the folder "langs" in it and applies the language setting.
    void attach(platform::ModuleRef instance, const TextLoading& loading = {});

    // Deletes the menu bitmaps and forgets that languages were loaded. Nothing when the extension is switched
    // off.
    void detach();

    // Makes `active` the language of the menus (empty: the system's) with `primary` as the one to fall back
    // to.
    void applyLanguage(std::u16string_view active, std::u16string_view primary);
};

}  // namespace nmshell
