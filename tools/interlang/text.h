// Text between the outside, which is UTF-8 to this program, and the tables, which are UTF-16; and the one
// failure that ends a command.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "lang/escapes.h"
#include "tools/common/text.h"

namespace translators {

// What went wrong, for the user, as UTF-8.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

using tools::utf8;
using tools::wide;

inline std::u16string decoded(std::u16string_view written) {
    std::u16string text(written);
    owlkit::decodeEscapes(text);
    return text;
}

// For messages: quoted, on one line, control characters as escapes.
inline std::string quoted(std::u16string_view text) {
    return '"' + utf8(owlkit::encodeEscapes(text)) + '"';
}

}  // namespace translators
