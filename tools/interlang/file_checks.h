// Checks of whole files and of the codes of languages. Each tells a fault for the user, or nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/interlang/language_files.h"

namespace translators {

// Why there are no texts in a file, as far as that can be seen.
std::string noTextsReason(std::string_view bytes);

// Whether the text has the form of a code: letters and digits in parts, which a hyphen or a low line
// separates. Nothing else can be one, since a code becomes a line of a file and the name of one.
bool isCodeForm(std::u16string_view code);

// Throws Failure where the text has another form.
void requireCodeForm(std::u16string_view code);

// A code that Windows never reports for a language: not in ISO 639, the longer one of two, or with a region
// that is not in ISO 3166.
std::string languageCodeFault(std::u16string_view code);

// A file that is named after another language than those in it.
std::string fileNameFault(const LanguageFile& file);

// Whether no loader reads a file of this name.
bool isNeverRead(std::u16string_view path);

// The files of `folder` that were hardly meant to be left unread, such as de.lang.TXT.
std::vector<std::u16string> unreadFilesOf(const std::u16string& folder);

}  // namespace translators
