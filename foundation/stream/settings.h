// The values of a stream's format settings.
#pragma once

#include <cstdint>

#include "foundation/charset/charset.h"

namespace owlkit {

// Any other value is kept, and stands for no swapping, no terminator and no encoding.
enum class ByteOrder : std::uint32_t { Native = 0, BigEndian = 1, LittleEndian = 2 };
enum class StringTerminator : std::uint32_t { None = 0, Nul = 1, Lf = 2, CrLf = 3, Cr = 4, CrLfAlias = 5 };
enum class TextEncoding : std::uint32_t {
    None = 0,  // narrow text as its bytes, wide text as its 2-byte units in memory order
    Utf8 = 1,
    Utf16 = 2,  // in the byte order
    Utf32 = 3,  // in the byte order
    Charset = 4,
};

// All four, as a value. A stream copies and compares them by copySettings and settingsCompatible.
struct StreamSettings {
    ByteOrder byteOrder = ByteOrder::Native;
    StringTerminator stringTerminator = StringTerminator::None;
    TextEncoding textEncoding = TextEncoding::None;
    CharsetCode charset = kCharsetSystem;
};

// 16- and 32-bit codes that are neither numbers nor characters.
enum class Code16 : std::uint16_t {};
enum class Code32 : std::uint32_t {};

}  // namespace owlkit
