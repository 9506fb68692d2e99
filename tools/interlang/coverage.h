// How far languages are translated.
#pragma once

#include <string>
#include <vector>

#include "tools/interlang/language_files.h"

namespace translators {

// All counts are of the reference language's keys but the last.
struct Coverage {
    std::u16string language;
    std::u16string name;          // what the language calls itself
    std::size_t keys = 0;         // of the reference language
    std::size_t translated = 0;   // with a text that is not blank, or meant to be, or as the reference's
    std::size_t asReference = 0;  // among them, those of several words that are still the reference's
    std::size_t empty = 0;
    std::size_t missing = 0;
    std::size_t obsolete = 0;                  // keys that the reference language does not have
    std::vector<std::u16string> untranslated;  // the keys that are empty or missing
};

// One for each language, in the order in which they were first met.
std::vector<Coverage> coverage(const LanguageFiles& files, const Reference& reference);

// In hundredths, cut off, so that only what is complete shows as 100.
std::size_t percent(const Coverage& language);

}  // namespace translators
