// The published tables of the single-byte charsets, kCharsetAscii to kCharsetDos850.
#pragma once

#include <cstdint>

#include "foundation/charset/charset.h"

namespace owlkit {

// The code unit of a byte, or 0 when the charset leaves the byte undefined. 0 also for the byte 0.
// `charset` must be a single-byte charset.
char16_t decodeSingleByte(CharsetCode charset, std::uint8_t byte);

// The byte of a code unit, or 0 when the charset has none. 0 also for the code unit 0.
std::uint8_t encodeSingleByte(CharsetCode charset, char16_t unit);

}  // namespace owlkit
