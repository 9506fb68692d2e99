// Findings and counts as text and as JSON, in UTF-8.
#pragma once

#include <string>
#include <vector>

#include "tools/interlang/check.h"

namespace translators {

// One line a finding, "FILE:LINE: error: LANGUAGE KEY: message [check]", then the consistency report and the
// counts.
std::string toText(const CheckResult& result);
std::string toJson(const CheckResult& result);

// How far a language is translated; all counts are of the reference language's keys but the last.
struct Coverage {
    std::u16string language;
    std::u16string name;          // what the language calls itself
    std::size_t keys = 0;         // of the reference language
    std::size_t translated = 0;   // with a text that is not blank
    std::size_t asReference = 0;  // among them, those of several words that are still the reference's
    std::size_t empty = 0;
    std::size_t missing = 0;
    std::size_t obsolete = 0;  // keys that the reference language does not have
};

std::vector<Coverage> coverage(const LanguageFiles& files, const Reference& reference);
std::string toText(const std::vector<Coverage>& languages);
std::string toJson(const std::vector<Coverage>& languages, const Reference& reference);

}  // namespace translators
