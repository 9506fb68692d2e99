// Conversion between narrow text in one of the charsets of charset.h and wide (UTF-16) text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/charset/charset.h"

namespace owlkit {

// What is done about an input unit that cannot be converted: to wide, that is one byte; to narrow, one code
// unit, or the two of a surrogate pair.
enum class ErrorPolicy : std::uint8_t {
    Replace = 0,   // writes the replacement argument; drops the unit when that is 0
    Stop = 1,      // the result ends before the unit
    Empty = 2,     // the whole result is empty
    Fixed = 3,     // writes U+FFFD to wide, the byte 0x1A to narrow
    Hex = 4,       // "x" and upper-case digits: two for a byte, four for a code unit, six for a pair
    KeepByte = 5,  // to wide: 0xDC00 plus the byte; to narrow: the low byte of 0xDC00 to 0xDCFF, else nothing
    Latin1 = 6,    // to wide from UTF-8: takes the byte as an ISO-8859-1 character; else drops the unit
};

// UTF-8 is decoded strictly (no overlong forms, nothing above U+10FFFF; each byte that begins no whole
// sequence fails by itself), except that an encoded surrogate yields that lone code unit. A byte that a
// single-byte charset leaves undefined fails, and so does the byte 0 there; in UTF-8 it is a character.
// kCharsetSystem is resolved by systemCharset(); when that finds none, and for kCharsetPlatform,
// MultiByteToWideChar converts from the ANSI code page: strictly, and if that fails once more as the platform
// sees fit (nothing under policy Empty). `failed`, when given, receives whether any unit failed. Throws
// "invalid conversion" for any other charset code, and "string too long" when the result cannot be held.
std::u16string ToWide(std::string_view text, CharsetCode charset, ErrorPolicy policy = ErrorPolicy::Replace,
                      char16_t replacement = u'?', bool* failed = nullptr);

// The mirror of ToWide. In UTF-8 nothing fails: a lone surrogate becomes its three bytes, so that all wide
// text comes back unit for unit; only under policy KeepByte a lone 0xDC80 to 0xDCFF, ToWide's form of a bad
// byte, fails and becomes that byte; beside encoded surrogates even that does not bring all bytes back. In a
// single-byte charset the code unit 0 fails. The platform's conversion is WideCharToMultiByte without
// best-fit characters; there policy Hex writes "xFFFD" for every unit that fails.
std::string ToNarrow(std::u16string_view text, CharsetCode charset, ErrorPolicy policy = ErrorPolicy::Replace,
                     char replacement = '?', bool* failed = nullptr);

// Appends ToWide(utf8, kCharsetUtf8), which must have no failure; a byte that fails ends it. Asks for no
// memory while `text` has room for as many more units as there are bytes.
void appendUtf8(std::u16string& text, std::string_view utf8);

// Whether `bytes` are UTF-8 that ToWide takes without a failure and ToNarrow gives back as it is; so without
// an encoded surrogate, of which two could come back as one character.
bool comesBackFromWide(std::string_view bytes);

}  // namespace owlkit
