// Loading of the language files of a folder.
#pragma once

#include <string>
#include <vector>

#include "lang/interlang.h"

namespace owlkit {

// The plain names of the files in `folder` that end in ".lang.txt" (letter case counts, and there must be
// more than that ending), in the platform's order. True if there is one.
[[nodiscard]] bool ListLanguageFiles(const std::u16string& folder, std::vector<std::u16string>& names);

// Adds the file's texts to `table`, which must not be loading and is built afterwards. Gives an empty text,
// or on a failed read one for the user, which names the line and `path`; the entries that were complete
// before that line stay in the table. A file that cannot be opened or read to its end gives the line -1 and
// no texts.
[[nodiscard]] std::u16string LoadLanguageFile(const std::u16string& path, interlang& table);

// Loads every language file of `folder` (with or without a separator at its end), in any case all of them.
// Gives an empty text if all could be read, or else the text of the first that could not; where there is no
// file, the general text "Languange File Error\nFailed to load language files.", and the table is as it was.
[[nodiscard]] std::u16string LoadLanguageFolder(const std::u16string& folder, interlang& table);

}  // namespace owlkit
