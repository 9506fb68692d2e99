// Texts and bytes as tests and fuzz targets take them apart.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/stream/memory_stream.h"

namespace test {

// Each byte as the unit of its number.
inline std::u16string widened(std::string_view bytes) {
    std::u16string units;
    for (const char byte : bytes)
        units += static_cast<std::uint8_t>(byte);
    return units;
}

// Bytes as UTF-16LE code units, without the last one of an odd number, and back.
inline std::u16string unitsOf(std::string_view bytes) {
    std::u16string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        units += static_cast<char16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                       static_cast<std::uint8_t>(bytes[i + 1]) << 8);
    return units;
}
inline std::string bytesOf(std::u16string_view units) {
    std::string bytes;
    for (const char16_t unit : units)
        (bytes += static_cast<char>(unit)) += static_cast<char>(unit >> 8);
    return bytes;
}

// All that the stream holds.
inline std::string bytesOf(const owlkit::MemoryStream& stream) {
    return {reinterpret_cast<const char*>(stream.data()), static_cast<std::size_t>(stream.size())};
}

// What stands between the separators; as many items as there are separators, and one more.
inline std::vector<std::u16string> itemsOf(std::u16string_view text, char16_t separator = u' ') {
    std::vector<std::u16string> items(1);
    for (const char16_t unit : text)
        unit == separator ? static_cast<void>(items.emplace_back()) : items.back().push_back(unit);
    return items;
}

}  // namespace test
