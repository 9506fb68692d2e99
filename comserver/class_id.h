// Class identifiers in their binary form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/com.h"

namespace nmshell {

// The binary form of "{00000000-0000-0000-0000-000000000000}"; digits are capitals.
constexpr CLSID classIdFrom(std::u16string_view text) {
    const auto number = [text](std::size_t first, std::size_t digits) {
        std::uint32_t value = 0;
        for (const char16_t digit : text.substr(first, digits))
            value = value << 4 | static_cast<std::uint32_t>(digit <= u'9' ? digit - u'0' : digit - u'A' + 10);
        return value;
    };
    CLSID id = {};
    id.Data1 = number(1, 8);
    id.Data2 = static_cast<std::uint16_t>(number(10, 4));
    id.Data3 = static_cast<std::uint16_t>(number(15, 4));
    for (std::size_t i = 0; i < 8; ++i)
        id.Data4[i] = static_cast<std::uint8_t>(number((i < 2 ? 20 : 21) + 2 * i, 2));
    return id;
}

}  // namespace nmshell
