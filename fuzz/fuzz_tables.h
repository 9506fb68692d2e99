// What a translation table must be after it was written and read back.
#pragma once

#include "foundation/stream/memory_stream.h"
#include "foundation/text/text.h"
#include "fuzz/fuzz.h"
#include "lang/escapes.h"
#include "lang/interlang.h"

namespace fuzz {

inline bool read(owlkit::interlang& table, owlkit::ByteStream& stream) {
    std::uint32_t line = 0;
    table.BeginLoad();
    const bool whole = table.Parse(stream, line);
    table.EndLoad();
    return whole;
}

// Control characters at either end are trimmed, unless they have an escape; spaces have one there.
inline bool isTrimmed(char16_t unit) {
    return unit < 32 && unit != 0 && (unit < 7 || unit > 13);
}

// Whether the format keeps the text: its writer leaves a backslash alone, which may begin an escape.
inline bool comesBack(std::u16string_view text) {
    return text.empty() ||
           (text.find(u'\\') == text.npos && !isTrimmed(text.front()) && !isTrimmed(text.back()));
}

// `again` holds what was written of `table` in `language`, and nothing else.
inline void requireWritten(const owlkit::interlang& table, const owlkit::interlang& again,
                           const std::u16string& language) {
    std::vector<std::u16string> keys;
    table.GetKeys(keys);
    for (const std::u16string& key : keys) {
        require(again.HasText(key, language));
        const bool has = table.HasText(key, language);
        const std::u16string text = has ? table.GetText(key, language) : std::u16string();
        std::u16string expected(owlkit::trim(owlkit::encodeEscapes(text)));
        owlkit::decodeEscapes(expected);
        require(again.GetText(key, language) == expected);
        require(expected == text || !comesBack(text));
    }
    std::vector<std::u16string> keysAgain;
    again.GetKeys(keysAgain);
    require(keysAgain == keys);
}

}  // namespace fuzz
