// A report for the people who keep the language files.
#pragma once

#include <cstdint>
#include <string>

#include "lang/interlang.h"

namespace owlkit {

// Whether every key of `table` has a text in every language. `report` is replaced by one entry for each key
// that has not, ascending, at most `maximum` of them (0 or less: all), then "More errors found, but report
// truncated.". Throws std::logic_error "invalid state" while the table is loading; an empty table is
// consistent.
[[nodiscard]] bool checkConsistency(const interlang& table, std::u16string& report, std::int32_t maximum);

}  // namespace owlkit
