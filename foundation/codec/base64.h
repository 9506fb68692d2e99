// Base64 (the alphabets of RFC 4648), from stream to stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/stream/byte_stream.h"

namespace owlkit {

enum Base64Alphabet : std::uint32_t {
    kBase64Standard = 0,  // "+" and "/", padded with "="
    kBase64Url = 1,       // "-" and "_", no padding and no line breaks
};

// What a decoder does with characters outside the alphabet.
enum Base64Strays : std::uint32_t {
    kIgnoreStrays = 0,
    kIgnoreLineBreaks = 1,  // LF and CR only
    kRefuseStrays = 2,
};

class Base64Codec {
  public:
    // `lineLength`: after so many characters or more of the standard alphabet a line feed is written, always
    // between groups of four; 0 or negative for no line breaks.
    explicit Base64Codec(std::int32_t lineLength = 0, std::uint32_t alphabet = kBase64Standard,
                         std::uint32_t strayPolicy = kIgnoreStrays)
        : lineLength_(lineLength), alphabet_(alphabet), strayPolicy_(strayPolicy) {}
    virtual ~Base64Codec() = default;

    // Streams are moved in blocks: after a write that fell short the source may be a block further.
    // Encodes `count` bytes of `source` (negative: all that come) and gives the characters written, line
    // feeds included.
    virtual std::int64_t encode(ByteStream& source, ByteStream& target, std::int64_t count);
    // Decodes up to `count` characters of `source` (negative: all that come) and gives the bytes written.
    // Padding after two or three characters of a group ends the text; what follows is not read. A single
    // left-over character still gives one byte, from its six bits; this is deliberate. "parse error" for a
    // stray character that the policy does not ignore; what was decoded before it is written.
    virtual std::int64_t decode(ByteStream& source, ByteStream& target, std::int64_t count);

    // Replaces `target` by the encoded characters and gives their number.
    std::size_t encodeToString(ByteStream& source, std::string& target, std::int64_t count = -1);
    std::size_t encodeToString(ByteStream& source, std::u16string& target, std::int64_t count = -1);
    // Decodes all of `text`. Characters of 128 and above are strays: dropped under kIgnoreStrays; otherwise a
    // wide text with one throws "parse error" before anything is written.
    std::int64_t decodeFromString(std::string_view text, ByteStream& target);
    std::int64_t decodeFromString(std::u16string_view text, ByteStream& target);

  private:
    void encodeGroup(std::size_t bytes, std::string& out);
    std::uint32_t sextet(std::size_t position) const;
    char letter(std::uint32_t sextet) const;
    std::uint32_t sextetOf(unsigned char letter) const;
    void placeSextet(std::size_t position, std::uint32_t sextet);
    std::size_t decodeGroup(ByteStream& source, std::int64_t& left);

    std::int32_t lineLength_;
    std::uint32_t alphabet_;
    std::uint32_t strayPolicy_;
    std::uint8_t group_[3] = {};
};

}  // namespace owlkit
