#include "foundation/codec/hex.h"

#include <cstdint>
#include <utility>

#include "foundation/errors.h"

namespace owlkit {
namespace {

template <class Char>
void appendHex(std::basic_string<Char>& out, std::uint32_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        out += static_cast<Char>("0123456789ABCDEF"[value >> shift & 0xF]);
}

template <class Char>
void escapeBytes(std::basic_string<Char>& target, const void* data, std::size_t length, bool keepPrintable,
                 std::basic_string_view<Char> prefix, std::basic_string_view<Char> suffix) {
    if (data == nullptr && length != 0)
        throwInvalidPointer();
    std::basic_string<Char> out;
    const std::uint8_t* bytes = static_cast<const std::uint8_t*>(data);
    for (std::size_t i = 0; i < length; ++i) {
        if (keepPrintable && bytes[i] >= 0x20 && bytes[i] <= 0x7F) {
            out += static_cast<Char>(bytes[i]);
            continue;
        }
        out += prefix;
        appendHex(out, bytes[i], 2);
        out += suffix;
    }
    target = std::move(out);
}

template <class Char>
std::basic_string<Char> escapeText(std::basic_string_view<Char> text, bool keepPrintable) {
    std::basic_string<Char> out;
    for (const Char character : text) {
        const std::uint32_t value =
            sizeof(Char) == 1 ? static_cast<std::uint8_t>(character) : static_cast<std::uint32_t>(character);
        if (value == 0 || (value >= 7 && value <= 13)) {
            out += static_cast<Char>('\\');
            out += static_cast<Char>(value == 0 ? '0' : "abtnvfr"[value - 7]);
        } else if (keepPrintable && value >= 32 && value <= 127) {
            out += character;
        } else {
            out += static_cast<Char>('\\');
            out += static_cast<Char>(value >= 256 ? 'u' : 'x');
            appendHex(out, value, value >= 256 ? 4 : 2);
        }
    }
    return out;
}

}  // namespace

void hexEscape(std::string& target, const void* data, std::size_t length, bool keepPrintable,
               std::string_view prefix, std::string_view suffix) {
    escapeBytes(target, data, length, keepPrintable, prefix, suffix);
}

void hexEscape(std::u16string& target, const void* data, std::size_t length, bool keepPrintable,
               std::u16string_view prefix, std::u16string_view suffix) {
    escapeBytes(target, data, length, keepPrintable, prefix, suffix);
}

std::string hexEscapeText(std::string_view text, bool keepPrintable) {
    return escapeText(text, keepPrintable);
}

std::u16string hexEscapeText(std::u16string_view text, bool keepPrintable) {
    return escapeText(text, keepPrintable);
}

}  // namespace owlkit
