// Numbers to text and back. Every operation has a narrow and a wide (UTF-16) form with the same rules; a
// narrow character with the high bit set counts as its byte value 128 to 255.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace owlkit {

// Any other value formats as SignedDecimal.
enum class NumberFormat : std::uint32_t {
    SignedDecimal = 0,
    UnsignedDecimal = 1,
    UpperHex = 2,
    LowerHex = 3,
    Octal = 4,
    Boolean = 5,  // "true" for every value but 0, else "false"; ignores the width
};

// The parse result that means overflow; -1 to a caller that reads it as signed.
inline constexpr std::uint32_t kParseOverflow = 0xFFFFFFFF;

// The text that printf gives for "%I64d" and its relatives. A `width` of 1 to 25 fills up with leading zeros
// to that many characters, a sign counted in and kept in front; any other width fills nothing. Unsigned,
// hexadecimal and octal text shows a negative value as its 64-bit two's complement. Instantiated for char and
// char16_t.
//
//   formatNumber<char>(257, NumberFormat::LowerHex)          "101"
//   formatNumber<char>(257, NumberFormat::UpperHex, 8)       "00000101"
//   formatNumber<char>(-7, NumberFormat::SignedDecimal, 4)   "-007"
//   formatNumber<char>(-1, NumberFormat::Octal)              "1777777777777777777777"
//   formatNumber<char>(5, NumberFormat::SignedDecimal, 26)   "5"
template <class Char>
std::basic_string<Char> formatNumber(std::int64_t value, NumberFormat format = NumberFormat::SignedDecimal,
                                     std::int32_t width = 0);

// Reads white space (see isSpace, not extended), then a sign or the prefix "0x" or "0X" (allowed in radix 0
// and 16 only, and not after a sign), then digits, among which single occurrences of `separator` may stand
// (an empty one never matches). Digits are 0-9, a-z, A-Z and their full-width forms; the codes 58 to 64 and
// U+FF1A to U+FF20 are the digits 10 to 16. `radix` is 2 to 36, or 0 for 16 after a prefix and otherwise 10;
// it comes back as the radix that was found. Other values throw "invalid radix" and change no argument.
// Returns how many characters were taken, 0 when the text does not begin with a number, or kParseOverflow; in
// the latter two cases `value` is 0, `negative` is false and `radix` is as it was. A sign, a prefix or white
// space alone is taken, with the value 0. Only an overflow that wraps below the value before it is noticed.
// `value` is the magnitude.
std::uint32_t parseNumber(std::string_view text, std::string_view separator, std::uint64_t& value,
                          std::uint32_t& radix, bool& negative);
std::uint32_t parseNumber(std::u16string_view text, std::u16string_view separator, std::uint64_t& value,
                          std::uint32_t& radix, bool& negative);

// parseNumber for 32 bits. A magnitude above 0xFFFFFFFF is an overflow. In radix 10 the number must also fit
// its sign; in every other radix the full 32 bits are accepted and "ffffffff" is -1. `value` changes only
// when the result is neither 0 nor kParseOverflow. By the rule of the sign "-0" and a lone "-" do not fit in
// radix 10.
//
//   text           radix  result            value
//   " 42 files"    10     3                 42
//   "0x1A"         0      4                 26
//   "0x1A"         10     0                 unchanged
//   "ffffffff"     16     8                 -1
//   "2147483648"   10     kParseOverflow    unchanged
//   "+"            10     1                 0
std::uint32_t parseInt32(std::string_view text, std::int32_t& value, std::uint32_t radix = 10,
                         std::string_view separator = {});
std::uint32_t parseInt32(std::u16string_view text, std::int32_t& value, std::uint32_t radix = 10,
                         std::u16string_view separator = {});

// The same for unsigned numbers: a minus sign is an overflow. Promised surface, which the extension itself
// does not call.
std::uint32_t parseUInt32(std::string_view text, std::uint32_t& value, std::uint32_t radix = 10,
                          std::string_view separator = {});
std::uint32_t parseUInt32(std::u16string_view text, std::uint32_t& value, std::uint32_t radix = 10,
                          std::u16string_view separator = {});

// The number that parseInt32 finds at the start of the text, or `fallback` when it finds none.
std::int32_t parseInt32Or(std::string_view text, std::int32_t fallback, std::uint32_t radix = 10,
                          std::string_view separator = {});
std::int32_t parseInt32Or(std::u16string_view text, std::int32_t fallback, std::uint32_t radix = 10,
                          std::u16string_view separator = {});

// Whether the character code is white space: every code below 33; with `extended` also Unicode's wider spaces
// and line ends (U+0085, U+1680, U+180E, U+2000 to U+200A, U+2028, U+2029, U+202F, U+205F, U+3000; not
// U+00A0).
bool isSpace(std::uint32_t code, bool extended = false);

}  // namespace owlkit
