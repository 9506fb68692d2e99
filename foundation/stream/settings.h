// The values of a stream's format settings.
#pragma once

#include <cstdint>

#include "foundation/charset/charset.h"

namespace owlkit {

enum ByteOrder : std::uint32_t { kNativeOrder = 0, kBigEndian = 1, kLittleEndian = 2 };
enum StringTerminator : std::uint32_t {
    kNoTerminator = 0,
    kNul = 1,
    kLf = 2,
    kCrLf = 3,
    kCr = 4,
    kCrLfAlias = 5
};
enum TextEncoding : std::uint32_t {
    kEncodingNone = 0,  // narrow text as its bytes, wide text as its 2-byte units in memory order
    kEncodingUtf8 = 1,
    kEncodingUtf16 = 2,  // in the byte order
    kEncodingUtf32 = 3,  // in the byte order
    kEncodingCharset = 4,
};

// All four, as a value. A stream copies and compares them by copySettings and settingsCompatible.
struct StreamSettings {
    std::uint32_t byteOrder = kNativeOrder;
    std::uint32_t stringTerminator = kNoTerminator;
    std::uint32_t textEncoding = kEncodingNone;
    CharsetCode charset = kCharsetSystem;
};

// 16- and 32-bit codes that are neither numbers nor characters.
enum class Code16 : std::uint16_t {};
enum class Code32 : std::uint32_t {};

}  // namespace owlkit
