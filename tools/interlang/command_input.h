// What the commands have in common: their files, the reference, and where the result goes.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/interlang/commands.h"
#include "tools/interlang/language_files.h"

namespace translators {

// To standard output; throws Failure when that fails.
void print(const std::string& text);
// A line to the error output, with the program's name.
void warn(const std::string& message);

// The language files that are named, or else those of the folder; throws Failure when there are none.
std::vector<std::u16string> paths(const Arguments& arguments);

// That there is no reference, and what helps.
std::string noReference(const Arguments& arguments);
// Throws Failure when there is none.
Reference reference(const Arguments& arguments, const LanguageFiles& files);
// Nothing when there is none.
std::optional<Reference> possibleReference(const Arguments& arguments, const LanguageFiles& files);

// Writes to standard output, or to the named file, which is replaced only if that is wanted.
void deliver(const Arguments& arguments, const std::string& text);

}  // namespace translators
