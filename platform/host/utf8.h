// Names between UTF-16 and the host's UTF-8 file names. Lone surrogates become their three bytes and come
// back, so every UTF-16 name has a host name of its own.
#pragma once

#include <string>
#include <string_view>

namespace platform {

std::string toHostName(std::u16string_view name);

// Bytes that are not UTF-8 come back as U+DC80 to U+DCFF, one code unit a byte.
std::u16string fromHostName(std::string_view name);

}  // namespace platform
