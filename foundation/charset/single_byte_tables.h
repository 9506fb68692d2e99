// The published tables of the single-byte charsets, from kCharsetAscii on.
#pragma once

#include <array>
#include <cstdint>

#include "foundation/charset/charset.h"

namespace owlkit {

// The table of one charset, laid out for conversion; bytes and code units below 0x80 are the same in each.
class SingleByteTable {
  public:
    // `charset` must be a single-byte charset.
    explicit SingleByteTable(CharsetCode charset);

    // The code unit of a byte, or 0 when the charset leaves the byte undefined. 0 also for the byte 0.
    char16_t decode(std::uint8_t byte) const { return units_[byte]; }

    // The byte of a code unit, or 0 when the charset has none. 0 also for the code unit 0.
    std::uint8_t encode(char16_t unit) const {
        return unit < 0x80 ? static_cast<std::uint8_t>(unit) : encodeUpper(unit);
    }

    // The slot of a code unit among 256; where it is taken, the next one.
    static constexpr std::uint8_t slotOf(char16_t unit) {
        return static_cast<std::uint8_t>(unit * 0x9E3Bu >> 8);
    }
    static constexpr std::uint8_t kEmpty = 0;

  private:
    std::uint8_t encodeUpper(char16_t unit) const {
        for (std::uint8_t slot = slotOf(unit);; ++slot) {
            const std::uint8_t place = slots_[slot];
            if (place == kEmpty)
                return 0;
            if (units_[place] == unit)
                return place;
        }
    }

    std::array<char16_t, 256> units_;  // by byte
    const std::uint8_t* slots_;        // the bytes of code units from 0x80 on, or kEmpty
};

}  // namespace owlkit
