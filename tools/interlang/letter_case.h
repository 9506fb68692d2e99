// Lower case of single characters.
#pragma once

namespace translators {

// The lower case of a code unit by Unicode's simple mapping; itself where it has none.
char16_t lowerCase(char16_t unit);

}  // namespace translators
