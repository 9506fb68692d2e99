// What a translation table must be after it was written and read back.
#pragma once

#include "foundation/stream/memory_stream.h"
#include "foundation/text/text.h"
#include "lang/escapes.h"
#include "lang/interlang.h"
#include "testing/fuzz.h"

namespace fuzz {

// Control characters at either end are trimmed, unless they have an escape; spaces have one there.
inline bool isTrimmed(char16_t unit) {
    return unit < 32 && unit != 0 && (unit < 7 || unit > 13);
}

// Whether the format keeps the text: its writer leaves a backslash alone, which may begin an escape.
inline bool comesBack(std::u16string_view text) {
    return text.empty() ||
           (text.find(u'\\') == text.npos && !isTrimmed(text.front()) && !isTrimmed(text.back()));
}

// What was written of `table` into `file`: these languages with every key, and nothing else.
inline void requireWritten(const owlkit::interlang& table, const std::vector<std::u16string>& languages,
                           owlkit::MemoryStream& file) {
    owlkit::interlang again;
    std::uint32_t line = 0;
    require(file.seek(0, owlkit::SeekOrigin::Start));
    again.BeginLoad();
    require(again.Parse(file, line));
    again.EndLoad();
    std::vector<std::u16string> names, keys, keysAgain;
    again.GetLanguages(names);
    require(names == languages);
    table.GetKeys(keys);
    again.GetKeys(keysAgain);
    require(keysAgain == keys || languages.empty());
    for (const std::u16string& language : languages) {
        for (const std::u16string& key : keys) {
            const std::u16string text =
                table.HasText(key, language) ? table.GetText(key, language) : std::u16string();
            std::u16string expected(owlkit::trim(owlkit::encodeEscapes(text)));
            owlkit::decodeEscapes(expected);
            require(again.HasText(key, language));
            require(again.GetText(key, language) == expected);
            require(expected == text || !comesBack(text));
        }
    }
}

}  // namespace fuzz
