// For fuzz targets: taking an input apart, and stopping at one that breaks a promise.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "foundation/charset/convert.h"
#include "testing/errors.h"
#include "testing/text.h"

namespace fuzz {

using test::bytesOf;
using test::unitsOf;
using test::widened;

// Stops at the input that breaks a promise; the report names the line.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

// Bytes as wide text: UTF-8, so that the words of a dictionary fit, with the bytes that are none as lone
// surrogates.
inline std::u16string wide(std::string_view bytes) {
    return owlkit::ToWide(bytes, owlkit::kCharsetUtf8, owlkit::ErrorPolicy::KeepByte);
}

inline std::string_view view(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// One of the numbers from 0 to `last`, as the type that stands for them.
template <class Type = std::uint32_t>
Type pick(FuzzedDataProvider& input, std::uint32_t last) {
    return static_cast<Type>(input.ConsumeIntegralInRange<std::uint32_t>(0, last));
}

// Settings of a stream, each up to the first value that is none of its own.
inline owlkit::StreamSettings settings(FuzzedDataProvider& input) {
    owlkit::StreamSettings settings;
    settings.textEncoding = pick<owlkit::TextEncoding>(input, 5);
    settings.byteOrder = pick<owlkit::ByteOrder>(input, 2);
    settings.stringTerminator = pick<owlkit::StringTerminator>(input, 6);
    settings.charset = pick(input, owlkit::kCharsetCount - 1);
    return settings;
}

}  // namespace fuzz
