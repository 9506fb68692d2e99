// Checks of single texts.
#pragma once

#include <string>
#include <string_view>

namespace translators {

// Whether these bytes are well-formed UTF-8, in which there are no encoded surrogates.
bool isUtf8(std::string_view bytes);

// Nothing but blanks and control characters.
bool isBlank(std::u16string_view text);

// Whether the text begins or ends with a blank or a control character.
bool hasOuterBlanks(std::u16string_view text);

// How often "%1" and "%2" occur other than in the reference text, and what looks like a placeholder and
// stands only here, for the user; empty when all is well.
std::string placeholderDifference(std::u16string_view text, std::u16string_view reference);

// The first character of the text that is invisible and not in the reference text, or a direction that is not
// ended, for the user. What Arabic or Indic writing needs is none.
std::string controlFault(std::u16string_view text, std::u16string_view reference);

// Whether the text ends in three dots or their one character; "(&O)" behind them does not count.
bool endsInEllipsis(std::u16string_view text);

// How many columns the text takes in a terminal; the wide characters of East Asia take two.
std::size_t columns(std::u16string_view text);

// Whether the text takes much more room than the reference text.
bool isTooLong(std::u16string_view text, std::u16string_view reference);

// How many single '&' of the text stand before a character.
std::size_t accelerators(std::u16string_view text);

// Whether the same text may be right in every language: the product's name and placeholders with at most one
// word beside them, since many languages share words.
bool isInternational(std::u16string_view text);

}  // namespace translators
