// Text as the units of a stream's text encoding: 1, 2 or 4 bytes each. Used by the text operations of the
// archive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/stream/settings.h"

namespace owlkit {

struct TextFormat {
    TextEncoding encoding;  // any other value counts as None
    CharsetCode charset;    // for TextEncoding::Charset
    bool bigEndian;         // for UTF-16 and UTF-32
};

// Whether narrow text is kept as its bytes.
bool isUnconverted(const TextFormat& format);

// The bytes of one unit; `wide` tells which kind of text an unconverted format holds.
std::size_t unitWidth(const TextFormat& format, bool wide);

// Wide text to units and back. A lone surrogate is kept in every Unicode encoding; what cannot be converted
// becomes '?'. An incomplete last unit of `bytes` is left out.
std::string encodeUnits(std::u16string_view text, const TextFormat& format);
std::u16string decodeUnits(std::string_view bytes, const TextFormat& format);

// Appends one unit of `width` bytes.
void appendUnit(std::string& bytes, std::uint32_t unit, std::size_t width, bool bigEndian);

// The index of the first of `count` units that equals the unit at `wanted`; `count` when there is none.
std::size_t findUnit(const std::uint8_t* units, std::size_t count, std::size_t width, const char* wanted);

}  // namespace owlkit
