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

// How often "%1" and "%2" occur other than in the reference text, for the user; empty when they do not.
std::string placeholderDifference(std::u16string_view text, std::u16string_view reference);

// Whether the same text may be right in every language: the product's name and placeholders with at most one
// word beside them, since many languages share words.
bool isInternational(std::u16string_view text);

}  // namespace translators
