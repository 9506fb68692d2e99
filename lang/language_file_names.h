// The names that language files are known by.
#pragma once

#include <string_view>

namespace owlkit {

inline constexpr std::u16string_view kLanguageFolder = u"langs";          // beside the module
inline constexpr std::u16string_view kLanguageFileEnding = u".lang.txt";  // letter case counts
inline constexpr std::u16string_view kLanguageNameKey = u"LANGUAGE";  // its text is the language's own name

}  // namespace owlkit
