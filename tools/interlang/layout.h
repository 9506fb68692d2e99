// Language files in the layout of the library's writer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/interlang/language_files.h"

namespace translators {

// One language as the library writes it, with the reference's texts as comments (none for its own language).
// It has exactly `texts`: what is missing stays missing. Throws Failure when it would not read back the same.
std::string layOut(std::u16string_view language, const Texts& texts, const Reference& reference);

// Throws Failure when the file could not be read whole, since the rest of it would be lost.
void requireWhole(const LanguageFile& file);

// A whole file: its opening comment, then each of its languages, keys that the reference does not have in a
// section of their own at the end. `additions` are put in where the file has no such key. Throws Failure when
// the file could not be read whole, since the rest would be lost.
std::string layOutFile(const LanguageFile& file, const Reference& reference,
                       const std::map<std::u16string, Texts>& additions = {});

// For each language of `files` the keys of the reference that it lacks, with empty texts.
std::map<std::u16string, Texts> missingTexts(const LanguageFiles& files, const Reference& reference);

// A file for a new language: the reference's opening comment and all its keys with empty texts.
std::string layOutTemplate(std::u16string_view language, const Reference& reference);

// The comment lines, each with its line break, and an empty line below. The rule that belongs to the heading
// of a language is left out.
std::string openingComment(const std::vector<std::u16string>& lines);

}  // namespace translators
