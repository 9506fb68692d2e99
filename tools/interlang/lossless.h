// Forms of a text that get through a file unchanged. The writer of language files leaves backslashes as they
// are, and the other formats cannot hold every code unit; so what would be lost is written as an escape
// beforehand.
#pragma once

#include <string>
#include <string_view>

namespace translators {

enum class Medium {
    LanguageFile,  // for the library's writer, which adds its own escapes
    Exchange,      // for PO and XLIFF: line feeds and tabs within a text stay, nothing that may be trimmed
};

// A form of the text that `written`, as in a language file, stands for; decoding its escapes gives that text
// back. Backslashes that are no escape in `written` stay plain where that is possible, so that a mistake
// stays to be seen.
std::u16string losslessForm(std::u16string_view written, Medium medium);

// The same for keys in PO and XLIFF. Keys know no escapes in language files, so all backslashes are plain
// ones.
std::u16string losslessKey(std::u16string_view key);

}  // namespace translators
