#include "platform/host/utf8.h"

#include <cstdint>

namespace platform {
namespace {

void append(std::string& out, char32_t c) {
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

// The number of bytes of the well-formed sequence at the start of `bytes` and its character; 0 when there is
// none.
std::size_t decode(std::string_view bytes, char32_t& c) {
    const auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const std::uint8_t lead = at(0);
    const std::size_t length = lead < 0x80       ? 1
                               : lead >> 5 == 6  ? 2
                               : lead >> 4 == 14 ? 3
                               : lead >> 3 == 30 ? 4
                                                 : 0;
    if (length == 0 || length > bytes.size())
        return 0;
    c = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (at(i) >> 6 != 2)
            return 0;
        c = c << 6 | (at(i) & 0x3F);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    return c >= kLeast[length] && c <= 0x10FFFF ? length : 0;
}

}  // namespace

std::string toHostName(std::u16string_view name) {
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        char32_t c = name[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < name.size() && name[i + 1] >= 0xDC00 && name[i + 1] < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (name[++i] - 0xDC00);
        append(out, c);
    }
    return out;
}

std::u16string fromHostName(std::string_view name) {
    std::u16string out;
    while (!name.empty()) {
        char32_t c = 0;
        const std::size_t length = decode(name, c);
        if (length == 0) {
            out += static_cast<char16_t>(0xDC00 + static_cast<std::uint8_t>(name[0]));
        } else if (c >= 0x10000) {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            out += static_cast<char16_t>(c);
        }
        name.remove_prefix(length == 0 ? 1 : length);
    }
    return out;
}

}  // namespace platform
