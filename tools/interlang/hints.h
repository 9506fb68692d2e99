// What helps translators of a text: in which menu it stands, and which accelerators are taken there.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "lang/interlang.h"

namespace translators {

// For each key that the program asks for, some lines; accelerators are those of the texts in the table's
// active language.
std::map<std::u16string, std::vector<std::string>> hints(const owlkit::interlang& texts);

}  // namespace translators
