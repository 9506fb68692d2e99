// Reading language files.
#pragma once

#include <cstdint>

#include "foundation/stream/byte_stream.h"
#include "lang/interlang.h"
#include "lang/read_observer.h"

namespace owlkit {

// Adds the texts of a language file, from the stream's position to its end, to `table`, which must be loading
// (std::logic_error "invalid state"). False on a syntax error, with the number of its line in `line`, and the
// entries that were complete before it in the table; false with the number 0xFFFFFFFF, and nothing in the
// table, when the stream's encoding or the rest of its bytes could not be read, or are 2 GiB and more. After
// true `line` is the number of lines. The stream's settings stay; its position is then its end. An `observer`
// is told what is read.
[[nodiscard]] bool readLanguages(interlang& table, ByteStream& stream, std::uint32_t& line,
                                 ReadObserver* observer);

}  // namespace owlkit
