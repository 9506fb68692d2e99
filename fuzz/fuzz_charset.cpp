// Any bytes in any charset: conversion never fails but by its policy, and what UTF-8 and the byte-keeping
// policy promise about coming back holds.
#include <cstdlib>
#include <cstring>

#include "foundation/charset/convert.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const owlkit::CharsetCode charset = 1 + data[0] % 21;
    const auto policy = static_cast<owlkit::ErrorPolicy>(data[1] % 7);
    const std::string bytes(reinterpret_cast<const char*>(data + 2), size - 2);

    bool failed = false;
    const std::u16string wide = owlkit::ToWide(bytes, charset, policy, u'?', &failed);
    if (!failed && owlkit::ToNarrow(wide, charset) != bytes && charset != owlkit::kCharsetUtf8)
        std::abort();

    // The same bytes taken as code units: UTF-8 brings every unit back, lone surrogates included, unless the
    // policy takes some of them for bytes.
    if (policy == owlkit::ErrorPolicy::KeepByte)
        return 0;
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), units.size() * 2);
    const std::string narrow = owlkit::ToNarrow(units, owlkit::kCharsetUtf8, policy, '?', &failed);
    if (failed || owlkit::ToWide(narrow, owlkit::kCharsetUtf8, policy, u'?', &failed) != units || failed)
        std::abort();
    return 0;
}
