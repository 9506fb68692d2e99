// Small operations on narrow and wide text.
#pragma once

#include <string>
#include <string_view>

namespace owlkit {

// The text without the code units up to 32 (as unsigned values) at its start and, for trim, at its end. The
// result is a view into the argument.
std::string_view trimLeft(std::string_view text);
std::u16string_view trimLeft(std::u16string_view text);
std::string_view trim(std::string_view text);
std::u16string_view trim(std::u16string_view text);

// The text with every occurrence of `from` replaced by `to`, found from the left without overlap; what was
// put in is not searched again. An empty `from` occurs nowhere.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);
std::u16string replaceAll(std::u16string_view text, std::u16string_view from, std::u16string_view to);

// A to Z become a to z; every other code unit stays.
std::string toLowerAscii(std::string_view text);
std::u16string toLowerAscii(std::u16string_view text);

}  // namespace owlkit
