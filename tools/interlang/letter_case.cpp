#include "tools/interlang/letter_case.h"

#include <algorithm>
#include <iterator>

namespace translators {
namespace {

struct CaseRange {
    char16_t first, last;
    int step, distance;
};

constexpr CaseRange kRanges[] = {
#include "tools/interlang/letter_case_table.inc"
};

}  // namespace

char16_t lowerCase(char16_t unit) {
    const auto range = std::ranges::lower_bound(kRanges, unit, {}, &CaseRange::last);
    const bool inside =
        range != std::end(kRanges) && unit >= range->first && (unit - range->first) % range->step == 0;
    return inside ? static_cast<char16_t>(unit + range->distance) : unit;
}

}  // namespace translators
