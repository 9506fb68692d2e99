// Writing a table as a language file.
#pragma once

#include <string_view>

#include "foundation/stream/byte_stream.h"
#include "lang/interlang.h"

namespace owlkit {

// Writes one language of `table`, or with an empty name all in the order of the language list. With a
// reference language that exists, each entry is preceded by a comment with its text in that language. Lines
// end as the stream's terminator setting says, with LF when it is none; without a text encoding it is UTF-8.
// False when there is no language at all or a write failed; std::logic_error "invalid state" while the table
// is loading, and for a language that does not exist.
[[nodiscard]] bool writeLanguages(const interlang& table, ByteStream& out, std::u16string_view language,
                                  std::u16string_view reference);

}  // namespace owlkit
