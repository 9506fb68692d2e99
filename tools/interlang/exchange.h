// Translations on their way to and from the programs that translators use.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/interlang/language_files.h"

namespace translators {

// All texts are in the exchange form of lossless.h, UTF-8.
struct Unit {
    std::string key;
    std::string source;                   // the reference text; the key where there is none
    std::optional<std::string> target;    // none: missing; it may be empty
    bool fuzzy = false;                   // the target has to be looked at
    std::optional<std::string> previous;  // the source that a fuzzy target was translated from
    std::vector<std::string> notes;       // the translator's
    std::vector<std::string> hints;       // for the translator: written, never read
};

struct Exchange {
    std::string source;  // language codes
    std::string language;
    std::vector<Unit> units;
    std::string date;                                         // such as 2026-01-31 12:00+0000
    std::vector<std::pair<std::string, std::string>> fields;  // of the header: who translates
};

// The fields of a header that are kept: in language files as comments such as "# Last-Translator: ...".
inline constexpr std::string_view kHeaderFields[] = {"Last-Translator", "Language-Team",
                                                     "Report-Msgid-Bugs-To"};

// The reference's keys and those that only this language has, in ascending order, with hints. The date is
// that of SOURCE_DATE_EPOCH, or else of the last change of a file that has the language. An empty language
// gives a template: the reference's keys without targets.
Exchange toExchange(const std::u16string& language, LanguageFiles& files, const Reference& reference);

// GNU gettext's PO: msgctxt is the key, msgid the source, msgstr the target. An empty text, which PO does not
// tell from a missing one, bears a comment. Both directions throw Failure on what they cannot take, with its
// line.
std::string writePo(const Exchange& exchange);
Exchange readPo(std::string_view bytes);

// XLIFF 1.2. A target that is empty counts as missing unless its state says that it is final.
std::string writeXliff(const Exchange& exchange, const std::string& original);
Exchange readXliff(const std::string& bytes);

// Either, by what the bytes begin with. They may be UTF-16 with a byte-order mark.
Exchange readExchange(const std::string& bytes);

}  // namespace translators
