// Language files in the layout of the library's writer, with the comments that translators need.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/interlang/language_files.h"

namespace translators {

// Throws Failure when the file could not be read whole, since the rest of it would be lost.
void requireWhole(const LanguageFile& file);

// The texts of the file that a later one replaces, a line for the user each: laying out leaves them out, but
// keeps their notes.
std::vector<std::string> leftOut(const LanguageFile& file);

// A whole file: its opening comment, then each of its languages, keys that the reference does not have in a
// section of their own at the end, then its closing comment. Above each text stand its notes and the
// reference text that it was translated from; that is the reference's own where the file does not tell. Empty
// texts that are not meant to be empty become untranslated, and so do `additions` where the file has no such
// key. Throws Failure when the file was not read whole, or when the result would not read back the same.
std::string layOutFile(const LanguageFile& file, const Reference& reference,
                       const std::map<std::u16string, Texts>& additions = {});

// For each language of `files` the keys of the reference that it lacks.
std::map<std::u16string, Texts> missingTexts(const LanguageFiles& files, const Reference& reference);

// A file for a new language: the reference's opening comment, and all its keys as untranslated.
std::string layOutTemplate(std::u16string_view language, const Reference& reference);

}  // namespace translators
