// Base64 (RFC 4648, sections 4 and 5): from stream to stream, and of texts in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/stream/byte_stream.h"

namespace owlkit {

// Any other value is the standard alphabet.
enum class Base64Alphabet : std::uint32_t {
    Standard = 0,  // "+" and "/", padded with "="
    Url = 1,       // "-" and "_", no padding and no line breaks
};

// What a decoder does with characters outside the alphabet. Any other value refuses them.
enum class Base64Strays : std::uint32_t {
    Ignore = 0,
    IgnoreLineBreaks = 1,  // LF and CR only
    Refuse = 2,
};

// The bytes in the standard alphabet, padded, on one line. Example: "Ma" gives "TWE=".
[[nodiscard]] std::u16string base64(std::string_view bytes);

// The bytes of a text in the standard alphabet; nothing when it holds any other character, or anything behind
// the padding that ends it. Missing padding is accepted, and a single left-over character gives one byte, as
// in Base64Codec::decode.
[[nodiscard]] std::optional<std::string> fromBase64(std::u16string_view text);

// Between streams: promised surface, which the extension itself does not call.
class Base64Codec {
  public:
    // `lineLength`: after so many characters or more of the standard alphabet a line feed is written, always
    // between groups of four; 0 or negative for no line breaks.
    explicit Base64Codec(std::int32_t lineLength = 0, Base64Alphabet alphabet = Base64Alphabet::Standard,
                         Base64Strays strays = Base64Strays::Ignore)
        : lineLength_(lineLength), alphabet_(alphabet), strays_(strays) {}
    virtual ~Base64Codec() = default;

    // Streams are moved in blocks: after a write that fell short the source may be a block further.
    // Encodes `count` bytes of `source` (negative: all that come) and gives the characters written, line
    // feeds included.
    virtual std::int64_t encode(ByteStream& source, ByteStream& target, std::int64_t count);
    // Decodes up to `count` characters of `source` (negative: all that come) and gives the bytes written.
    // Padding after two or three characters of a group ends the text; the source is then positioned behind
    // it. Compatible: a single left-over character gives one byte, from its six bits. "parse error" for a
    // stray character that is not ignored; what was decoded before it is written.
    virtual std::int64_t decode(ByteStream& source, ByteStream& target, std::int64_t count);

    // Replaces `target` by the encoded characters and gives their number.
    std::size_t encodeToString(ByteStream& source, std::string& target, std::int64_t count = -1);
    std::size_t encodeToString(ByteStream& source, std::u16string& target, std::int64_t count = -1);
    // Decodes all of `text`. Characters of 128 and above are strays: dropped where strays are ignored;
    // otherwise a wide text with one throws "parse error" before anything is written.
    std::int64_t decodeFromString(std::string_view text, ByteStream& target);
    std::int64_t decodeFromString(std::u16string_view text, ByteStream& target);

  private:
    std::int32_t lineLength_;
    Base64Alphabet alphabet_;
    Base64Strays strays_;
};

}  // namespace owlkit
