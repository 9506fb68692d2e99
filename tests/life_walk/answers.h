// What may be otherwise after a failure. Everything else must be as if nothing had failed.
#pragma once

#include <cstdint>
#include <string_view>

namespace nmshell {

enum Difference : std::uint32_t {
    kNotLoaded = 1 << 0,       // the module refuses to be loaded
    kNotServed = 1 << 1,       // the class object, the instance or Initialize is refused
    kNoEntries = 1 << 2,       // nothing is added to the menu, or adding is reported as failed
    kEntryLost = 1 << 3,       // single entries are missing
    kGrayed = 1 << 4,          // entries cannot be chosen
    kOffered = 1 << 5,         // entries can be chosen that could not
    kIconLost = 1 << 6,        // entries have no icon
    kOtherLanguage = 1 << 7,   // texts are in another language, or are their keys
    kNoText = 1 << 8,          // the wipe entry has no text: whether it is a file or a folder is not known
    kNoHelp = 1 << 9,          // help texts are refused
    kNotStarted = 1 << 10,     // nothing is started
    kPathLeftOut = 1 << 11,    // paths are missing among those handed over
    kWithoutData = 1 << 12,    // no path is handed over
    kWithoutCursor = 1 << 13,  // no cursor position is handed over
    kHandoverMoved = 1 << 14,  // the hand-over file lies in the current folder
    kHandoverLeft = 1 << 15,   // a hand-over file lies there that no program was started for
};

// What may come of a failing call of `operation`, a Windows function. A test that meets one without an answer
// fails.
std::uint32_t mayDifferAfter(std::string_view operation);

// What may come of calls that all fail from some point on: whatever any one of them may cause.
std::uint32_t mayDifferAfterAny();

// What may come of memory running out: everything is refused whole or done whole.
std::uint32_t mayDifferWithoutMemory();

}  // namespace nmshell
