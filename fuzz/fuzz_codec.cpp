// Base64: every byte string comes back through both alphabets, and any text is decoded or refused with "parse
// error".
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "foundation/codec/base64.h"
#include "foundation/stream/memory_stream.h"

namespace {

void roundTrip(const std::uint8_t* data, std::size_t size, std::int32_t lineLength,
               owlkit::Base64Alphabet alphabet) {
    owlkit::MemoryStream source(data, size);
    std::u16string text;
    owlkit::Base64Codec codec(lineLength, alphabet, owlkit::Base64Strays::IgnoreLineBreaks);
    codec.encodeToString(source, text);
    owlkit::MemoryStream decoded;
    codec.decodeFromString(text, decoded);
    if (decoded.size() != static_cast<std::int64_t>(size) ||
        (size && std::memcmp(decoded.data(), data, size) != 0))
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    roundTrip(data + 1, size - 1, data[0] % 80, owlkit::Base64Alphabet::Standard);
    roundTrip(data + 1, size - 1, 0, owlkit::Base64Alphabet::Url);

    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    owlkit::MemoryStream decoded;
    try {
        owlkit::Base64Codec(0, owlkit::Base64Alphabet(data[0] & 1), owlkit::Base64Strays(data[0] >> 1 & 3))
            .decodeFromString(text, decoded);
    } catch (const std::runtime_error& error) {
        if (std::strcmp(error.what(), "parse error") != 0)
            std::abort();
    }
    if (decoded.size() > static_cast<std::int64_t>(size))
        std::abort();
    return 0;
}
