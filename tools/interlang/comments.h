// The comments of language files, and what some of them mean:
//
//   # note             anything, for translators; so is what begins with //
//   #, empty           the text below is empty on purpose
//   #> &Options...     what the reference text is now; written anew each time
//   # &Option...       directly above the key: the reference text that was translated
//   #~ KEY: ...        a key that is still to be translated, and below it
//   #~ TEXT:           the place of its text
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/interlang/language_files.h"

namespace translators {

inline constexpr std::u16string_view kEmptyMark = u"#, empty";
inline constexpr std::u16string_view kNowMark = u"#>";
inline constexpr std::u16string_view kUntranslatedMark = u"#~";
inline constexpr std::u16string_view kLanguageComment = u"# Localized language name";
// Begins the section of obsolete keys, and is written anew each time.
inline constexpr std::u16string_view kObsoleteComment = u"# Obsolete: ";

// Whether a comment line belongs to the layout and is written anew: rules, and the heading above.
bool isLayoutComment(std::u16string_view line);

// The lines without blank ones at either end and without those of the layout.
std::vector<std::u16string> withoutLayout(const std::vector<std::u16string>& lines);

// Puts the lines above a key, blank ones as empty, where they belong in `text`. Only a line that stands
// directly above can be the source.
void takeComments(const std::vector<std::u16string>& lines, std::u16string_view key, Text& text);

}  // namespace translators
