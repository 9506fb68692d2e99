// Text between programs, which take and print UTF-8, and everything else. Every wide text survives both ways,
// lone surrogates in file names included.
#pragma once

#include <string>
#include <string_view>

#include "foundation/charset/convert.h"

namespace tools {

inline std::string utf8(std::u16string_view text) {
    return owlkit::ToNarrow(text, owlkit::kCharsetUtf8);
}

inline std::u16string wide(std::string_view text) {
    return owlkit::ToWide(text, owlkit::kCharsetUtf8);
}

}  // namespace tools
