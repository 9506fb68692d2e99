// What comes back from translators' programs is put into language files.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/interlang/exchange.h"
#include "tools/interlang/language_files.h"

namespace translators {

struct Imported {
    std::string bytes;  // of the language file
    std::size_t taken = 0;
    std::size_t kept = 0;   // texts of the file that stay
    std::size_t fuzzy = 0;  // left out
    std::vector<std::string> warnings;
};

// Puts the finished targets of `exchange` into its language of `file`, which may be empty; what it lacks or
// marks as fuzzy stays as it is, unless `replace` says that nothing else is wanted. A unit whose key nobody
// knows is taken for the one key that has its source; else it is taken as it is, with a warning, and so is a
// source that is not the reference's. Without a reference (its texts are none) there is nothing to warn of.
// Throws Failure when the file cannot be rewritten, two units are for one key, or no target is finished.
Imported importInto(LanguageFile file, const Exchange& exchange, Reference reference, bool replace);

}  // namespace translators
