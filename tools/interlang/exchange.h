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
    std::string source;                 // the reference text; the key where there is none
    std::optional<std::string> target;  // none: missing; it may be empty
};

struct Exchange {
    std::string source;  // language codes
    std::string language;
    std::vector<Unit> units;
};

// The reference's keys and those that only this language has, in ascending order.
Exchange toExchange(std::u16string_view language, const Texts& texts, const Reference& reference);

// A language file with the targets, the sources as comments, below `opening`. Throws Failure when there is
// none.
std::string toLanguageFile(const Exchange& exchange, const std::vector<std::u16string>& opening);

// GNU gettext's PO: msgctxt is the key, msgid the source, msgstr the target. `date` is the header's revision
// date, such as 2026-01-31 12:00+0000. An empty text, which PO does not tell from a missing one, bears a
// comment. Fuzzy entries count as missing. Both directions throw Failure on what they cannot take, with its
// line.
std::string writePo(const Exchange& exchange, const std::string& date);
Exchange readPo(std::string_view bytes);

// XLIFF 1.2. A target that is empty counts as missing unless its state says that it is final.
std::string writeXliff(const Exchange& exchange, const std::string& original);
Exchange readXliff(const std::string& bytes);

}  // namespace translators
