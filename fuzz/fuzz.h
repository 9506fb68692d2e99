// What the fuzz targets share.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "foundation/charset/convert.h"

namespace fuzz {

// Stops at the input that breaks a promise; the report names the line.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

// The text of the exception that `call` throws, or nothing.
template <class Call>
std::string error(Call call) {
    try {
        call();
    } catch (const std::exception& thrown) {
        return thrown.what();
    }
    return {};
}

// Bytes as wide text: UTF-8, so that the words of a dictionary fit, with the bytes that are none as lone
// surrogates.
inline std::u16string wide(std::string_view bytes) {
    return owlkit::ToWide(bytes, owlkit::kCharsetUtf8, owlkit::ErrorPolicy::KeepByte);
}

// Bytes as UTF-16LE code units.
inline std::u16string units(std::string_view bytes) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        text += static_cast<char16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                      static_cast<std::uint8_t>(bytes[i + 1]) << 8);
    return text;
}

inline std::string_view view(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace fuzz
