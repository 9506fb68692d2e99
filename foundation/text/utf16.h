// Surrogates of UTF-16.
#pragma once

namespace owlkit {

inline constexpr char32_t kFirstSupplementary = 0x10000;  // the first character that takes two code units
inline constexpr char32_t kLastCharacter = 0x10FFFF;

constexpr bool isHighSurrogate(char32_t unit) {
    return (unit & 0xFFFFFC00) == 0xD800;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return (unit & 0xFFFFFC00) == 0xDC00;
}
constexpr bool isSurrogate(char32_t unit) {
    return (unit & 0xFFFFF800) == 0xD800;
}

// The character of a high and a low surrogate, and the two of a character from kFirstSupplementary on.
constexpr char32_t fromSurrogates(char32_t high, char32_t low) {
    return kFirstSupplementary + ((high - 0xD800) << 10) + (low - 0xDC00);
}
constexpr char16_t highSurrogateOf(char32_t character) {
    return static_cast<char16_t>(0xD800 + ((character - kFirstSupplementary) >> 10));
}
constexpr char16_t lowSurrogateOf(char32_t character) {
    return static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

}  // namespace owlkit
