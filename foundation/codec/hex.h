// Bytes and text made readable with hexadecimal escapes. Meant for display: neither form can be read back for
// certain, since backslashes and quotation marks are not escaped. Promised surface, which the extension
// itself does not call.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace owlkit {

// Puts `prefix`, two upper-case hexadecimal digits and `suffix` for every byte into `target`, which starts
// empty; with `keepPrintable` the bytes 20 to 7F stand for themselves. "invalid pointer" for a null `data`
// with a length.
void hexEscape(std::string& target, const void* data, std::size_t length, bool keepPrintable,
               std::string_view prefix = {}, std::string_view suffix = {});
void hexEscape(std::u16string& target, const void* data, std::size_t length, bool keepPrintable,
               std::u16string_view prefix = {}, std::u16string_view suffix = {});

// Code units 0 and 7 to 13 become "\0", "\a", "\b", "\t", "\n", "\v", "\f", "\r"; with `keepPrintable` 32 to
// 127 stay; any other becomes "\x" and two upper-case hexadecimal digits, or "\u" and four from 256 up.
std::string hexEscapeText(std::string_view text, bool keepPrintable);
std::u16string hexEscapeText(std::u16string_view text, bool keepPrintable);

}  // namespace owlkit
