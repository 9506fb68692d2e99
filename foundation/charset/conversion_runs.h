// The bulk of every conversion: runs of characters that both sides have. Where a run ends at a unit that
// cannot be converted, the caller's error policy takes over.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/charset/single_byte_tables.h"

namespace owlkit {

// Each function converts from the start of [in, end) until a unit fails, the input ends or less than
// kRunSlack units of [out, limit) are left, and moves `in` and `out` behind what it took and wrote. It writes
// nothing behind `limit`, but may have written between the final `out` and `limit`.
inline constexpr std::size_t kRunSlack = 64;

// UTF-8 to UTF-16 by the rules of ToWide.
void decodeUtf8Run(const std::uint8_t*& in, const std::uint8_t* end, char16_t*& out, const char16_t* limit);

// The same without a target; an encoded surrogate fails as well.
void passUtf8Run(const std::uint8_t*& in, const std::uint8_t* end);

// UTF-16 to UTF-8 by the rules of ToNarrow; with `keepBytes` a lone 0xDC80 to 0xDCFF fails, else nothing
// does.
void encodeUtf8Run(const char16_t*& in, const char16_t* end, std::uint8_t*& out, const std::uint8_t* limit,
                   bool keepBytes);

// A single-byte charset, both ways.
void decodeTableRun(const SingleByteTable& table, const std::uint8_t*& in, const std::uint8_t* end,
                    char16_t*& out, const char16_t* limit);
void encodeTableRun(const SingleByteTable& table, const char16_t*& in, const char16_t* end,
                    std::uint8_t*& out, const std::uint8_t* limit);

}  // namespace owlkit
