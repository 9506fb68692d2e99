// Text between the outside, which is UTF-8 to this program, and the tables, which are UTF-16; and the one
// failure that ends a command.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "foundation/text/number.h"
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

// For messages and the terminal: on one line, control characters as escapes.
inline std::u16string printable(std::u16string_view text) {
    std::u16string result;
    for (const char16_t unit : owlkit::encodeEscapes(text)) {
        if (unit >= 32 && (unit < 0x7F || unit > 0x9F))
            result += unit;
        else
            result += u"\\x" + owlkit::formatNumber<char16_t>(unit, owlkit::NumberFormat::UpperHex, 2);
    }
    return result;
}

inline std::string quoted(std::u16string_view text) {
    return '"' + utf8(printable(text)) + '"';
}

}  // namespace translators
