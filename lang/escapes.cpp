#include "lang/escapes.h"

#include <algorithm>

#include "foundation/text/number.h"

namespace owlkit {
namespace {

constexpr std::u16string_view kLetters = u"0abtnvfr";
constexpr std::u16string_view kUnits(u"\0\a\b\t\n\v\f\r", 8);
constexpr std::u16string_view kSpace = u"\\x20";

// The value of a hexadecimal digit, -1 for any other code unit.
int digitValue(char16_t unit) {
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    if (unit >= u'A' && unit <= u'F')
        return unit - u'A' + 10;
    return unit >= u'a' && unit <= u'f' ? unit - u'a' + 10 : -1;
}

// The code unit that the `count` digits at the start of `text` give, or -1.
int hexValue(std::u16string_view text, std::size_t count) {
    if (text.size() < count)
        return -1;
    int value = 0;
    for (char16_t unit : text.substr(0, count)) {
        const int digit = digitValue(unit);
        if (digit < 0)
            return -1;
        value = value * 16 + digit;
    }
    return value;
}

// What the escape at the start of `text` (a backslash, then anything) stands for, or -1; `length` is what
// it takes.
int escapeValue(std::u16string_view text, std::size_t& length) {
    length = 2;
    if (const auto letter = kLetters.find(text[1]); letter != std::u16string_view::npos)
        return kUnits[letter];
    const std::size_t digits = text[1] == u'x' ? 2 : text[1] == u'u' ? 4 : 0;
    const int value = digits == 0 ? -1 : hexValue(text.substr(2), digits);
    if (value >= 0)
        length += digits;
    return value;
}

void appendHex(std::u16string& result, char16_t unit) {
    const bool wide = unit > 0xFF;
    result += wide ? u"\\u" : u"\\x";
    result += formatNumber<char16_t>(unit, NumberFormat::UpperHex, wide ? 4 : 2);
}

void appendSpaces(std::u16string& result, std::size_t count) {
    for (; count > 0; --count)
        result += kSpace;
}

}  // namespace

void decodeEscapes(std::u16string& text) {
    std::size_t from = text.find(u'\\');
    if (from == std::u16string::npos)
        return;
    std::size_t to = from;
    while (from + 1 < text.size()) {
        if (text[from] != u'\\') {
            text[to++] = text[from++];
            continue;
        }
        std::size_t length = 0;
        if (text[from + 1] == u'\\') {
            length = std::min(text.find_first_not_of(u'\\', from), text.size()) - from;
        } else if (const int value = escapeValue(std::u16string_view(text).substr(from), length);
                   value >= 0) {
            text[to++] = static_cast<char16_t>(value);
            from += length;
            continue;
        }
        for (; length > 0; --length)
            text[to++] = text[from++];
    }
    if (from < text.size())
        text[to++] = text[from];
    text.resize(to);
}

std::size_t findBrokenEscape(std::u16string_view text) {
    std::size_t length = 0;
    for (std::size_t at = text.find(u'\\'); at != std::u16string_view::npos;
         at = text.find(u'\\', at + length)) {
        if (at + 1 == text.size() || escapeValue(text.substr(at), length) < 0)
            return at;
    }
    return std::u16string_view::npos;
}

std::u16string encodeEscapes(std::u16string_view text, EscapeMode mode) {
    std::u16string result;
    result.reserve(text.size());
    if (mode == EscapeMode::Ascii) {
        for (char16_t unit : text) {
            if (unit >= 32 && unit <= 127)
                result += unit;
            else
                appendHex(result, unit);
        }
        return result;
    }
    const std::size_t first = std::min(text.find_first_not_of(u' '), text.size());
    const std::size_t last = std::max(text.find_last_not_of(u' ') + 1, first);
    appendSpaces(result, first);
    for (char16_t unit : text.substr(first, last - first)) {
        if (const auto place = kUnits.find(unit); place != std::u16string_view::npos)
            result.append({u'\\', kLetters[place]});
        else
            result += unit;
    }
    appendSpaces(result, text.size() - last);
    return result;
}

}  // namespace owlkit
