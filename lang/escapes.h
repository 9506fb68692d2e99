// Backslash escapes of the texts in language files.
//
//   \0 \a \b \t \n \v \f \r    the code units 0, 7, 8, 9, 10, 11, 12, 13
//   \xHH                       the code unit of exactly two hexadecimal digits, upper or lower case
//   \uHHHH                     the code unit of exactly four
//
//   text of a file    what it holds
//   Wipe\n\x20now     "Wipe", a line break, a space, "now"
//   \u20AC\q          "\u20AC" as one code unit, then "\q"
//   C:\\new           "C:\\new", with both backslashes
//   \x4               "\x4"
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace owlkit {

// Decodes `text` in place; it never grows. What is no escape stays as it is: a backslash before any other
// character (which then starts no escape itself), every backslash of an unbroken run of two or more together
// with the character behind the run, \x or \u with too few digits, and a backslash at the very end. A decoded
// code unit is not looked at again.
void decodeEscapes(std::u16string& text);

// Where in `text` the first backslash stands that starts no escape, or std::u16string_view::npos.
std::size_t findBrokenEscape(std::u16string_view text);

enum class EscapeMode {
    File,  // the form of language files: the letters above, and \x20 for spaces at either end; all else stays
    Ascii,  // code units 32 to 127 stay, those from 256 up become \uHHHH, the others \xHH (upper-case digits)
};

// A backslash is never escaped, since a doubled one would be read back doubled. So one before an escape
// letter reads back as that escape.
std::u16string encodeEscapes(std::u16string_view text, EscapeMode mode = EscapeMode::File);

}  // namespace owlkit
