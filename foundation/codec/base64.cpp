#include "foundation/codec/base64.h"

#include <algorithm>
#include <vector>

#include "foundation/codec/base64_groups.h"
#include "foundation/errors.h"
#include "foundation/stream/memory_stream.h"

namespace owlkit {
namespace {

// Streams are read and written in blocks: one of a few bytes may cost a platform call.
constexpr std::int64_t kBlock = 3 * 4096;

const Base64Letters& lettersOf(Base64Alphabet alphabet) {
    return alphabet == Base64Alphabet::Url ? kUrlLetters : kStandardLetters;
}

// Writes the letters and the padding of `size` bytes that are all or the last of a text.
template <class Char>
Char* encodeLast(const Base64Letters& letters, bool padded, const std::uint8_t* bytes, std::size_t size,
                 Char* out) {
    out = encodeBase64Groups(letters, bytes, size / 3, out);
    const std::size_t rest = size % 3;
    if (rest == 0)
        return out;
    out = encodeBase64Rest(letters, bytes + (size - rest), rest, out);
    return padded ? std::fill_n(out, 3 - rest, Char{'='}) : out;
}

// Writes encoded characters with the line feeds that belong between them.
class LineWriter {
  public:
    LineWriter(Base64Alphabet alphabet, std::int32_t lineLength)
        : letters_(lettersOf(alphabet)),
          padded_(alphabet != Base64Alphabet::Url),
          groupsOfLine_(padded_ && lineLength > 0 ? (static_cast<std::size_t>(lineLength) + 3) / 4 : 0),
          left_(groupsOfLine_) {}

    // `out` is replaced by the text of these bytes; all but the last of a text come in whole groups.
    void write(const std::uint8_t* bytes, std::size_t size, std::string& out) {
        const std::size_t groups = (size + 2) / 3;
        out.resize(groups * 4 + (groupsOfLine_ == 0 ? 0 : groups / groupsOfLine_ + 1));
        char* end = out.data();
        while (groupsOfLine_ != 0 && (size + 2) / 3 >= left_) {
            const std::size_t line = std::min(left_ * 3, size);
            end = encodeLast(letters_, padded_, bytes, line, end);
            *end++ = '\n';
            bytes += line;
            size -= line;
            left_ = groupsOfLine_;
        }
        end = encodeLast(letters_, padded_, bytes, size, end);
        left_ -= groupsOfLine_ == 0 ? 0 : (size + 2) / 3;
        out.resize(static_cast<std::size_t>(end - out.data()));
    }

  private:
    const Base64Letters& letters_;
    bool padded_;
    std::size_t groupsOfLine_;  // 0: no line breaks
    std::size_t left_;          // groups until the next line feed
};

// Writes `out` and empties it; whether all of it was written.
bool drain(std::string& out, ByteStream& target, std::int64_t& total) {
    const std::size_t written = out.empty() ? 0 : target.write(out.data(), out.size());
    total += static_cast<std::int64_t>(written);
    const bool whole = written == out.size();
    out.clear();
    return whole;
}

bool isIgnored(std::uint8_t character, Base64Strays strays) {
    const bool lineBreak = character == '\n' || character == '\r';
    return strays == Base64Strays::Ignore || (strays == Base64Strays::IgnoreLineBreaks && lineBreak);
}

// Decodes one block into `out`, which is replaced; gives how many characters were taken. A stray that is not
// ignored is not taken.
std::size_t decodeBlock(Base64Decoder& decoder, const std::vector<std::uint8_t>& block, std::size_t size,
                        Base64Strays strays, std::string& out) {
    out.resize(size / 4 * 3 + 6);
    char* to = out.data();
    const std::uint8_t* in = block.data();
    const std::uint8_t* const end = in + size;
    for (;;) {
        decoder.take(in, end, to);
        if (in == end || decoder.ended() || !isIgnored(*in, strays))
            break;
        ++in;
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
    return static_cast<std::size_t>(in - block.data());
}

template <class Char>
std::size_t assignEncoded(Base64Codec& codec, ByteStream& source, std::basic_string<Char>& target,
                          std::int64_t count) {
    MemoryStream encoded;
    codec.encode(source, encoded, count);
    const std::uint8_t* letters = encoded.data();
    target.assign(letters, letters + encoded.size());
    return target.size();
}

}  // namespace

std::u16string base64(std::string_view bytes) {
    std::u16string text((bytes.size() + 2) / 3 * 4, u'\0');
    encodeLast(kStandardLetters, true, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(),
               text.data());
    return text;
}

std::optional<std::string> fromBase64(std::u16string_view text) {
    std::string bytes(text.size() / 4 * 3 + 3, '\0');
    char* out = bytes.data();
    const char16_t* in = text.data();
    const char16_t* const end = in + text.size();
    Base64Decoder decoder(kStandardLetters);
    decoder.take(in, end, out);
    while (decoder.ended() && in != end && *in == u'=')
        ++in;
    if (in != end)
        return std::nullopt;
    decoder.finish(out);
    bytes.resize(static_cast<std::size_t>(out - bytes.data()));
    return bytes;
}

std::int64_t Base64Codec::encode(ByteStream& source, ByteStream& target, std::int64_t count) {
    LineWriter writer(alphabet_, lineLength_);
    std::vector<std::uint8_t> block(static_cast<std::size_t>(kBlock));
    std::string out;
    std::int64_t total = 0;
    std::int64_t left = count;
    while (left != 0) {
        const std::size_t wanted = static_cast<std::size_t>(left < 0 ? kBlock : std::min(left, kBlock));
        std::size_t got = 0;
        for (std::size_t part = 3; part >= 3 && got < wanted; got += part)  // fewer than three are the last
            part = source.read(block.data() + got, wanted - got);
        writer.write(block.data(), got, out);
        if (!drain(out, target, total) || got < static_cast<std::size_t>(kBlock))
            break;
        if (left > 0)
            left -= static_cast<std::int64_t>(got);
    }
    return total;
}

std::int64_t Base64Codec::decode(ByteStream& source, ByteStream& target, std::int64_t count) {
    // Where a stream cannot go back, no character behind the text may be read.
    const std::int64_t blockSize = source.isSeekable() ? kBlock : 1;
    std::vector<std::uint8_t> block(static_cast<std::size_t>(blockSize));
    Base64Decoder decoder(lettersOf(alphabet_));
    std::string out;
    std::int64_t total = 0;
    for (std::int64_t left = count; left != 0 && !decoder.ended();) {
        const std::size_t wanted = static_cast<std::size_t>(left < 0 ? blockSize : std::min(left, blockSize));
        const std::size_t got = source.read(block.data(), wanted);
        if (got == 0)
            break;
        const std::size_t taken = decodeBlock(decoder, block, got, strays_, out);
        const bool refused = taken != got && !decoder.ended();
        if (const std::size_t unread = got - taken - (refused ? 1 : 0); unread != 0)
            static_cast<void>(source.seek(-static_cast<std::int64_t>(unread), SeekOrigin::Position));
        if (!drain(out, target, total))
            return total;
        if (refused)
            throwParseError();
        if (left > 0)
            left -= static_cast<std::int64_t>(got);
    }
    char last[3];
    char* end = last;
    decoder.finish(end);
    out.assign(last, end);
    drain(out, target, total);
    return total;
}

std::size_t Base64Codec::encodeToString(ByteStream& source, std::string& target, std::int64_t count) {
    return assignEncoded(*this, source, target, count);
}

std::size_t Base64Codec::encodeToString(ByteStream& source, std::u16string& target, std::int64_t count) {
    return assignEncoded(*this, source, target, count);
}

std::int64_t Base64Codec::decodeFromString(std::string_view text, ByteStream& target) {
    MemoryStream source(text.data(), text.size(), false);
    return decode(source, target, -1);
}

std::int64_t Base64Codec::decodeFromString(std::u16string_view text, ByteStream& target) {
    std::string narrow;
    narrow.reserve(text.size());
    for (const char16_t unit : text) {
        if (unit < 128)
            narrow += static_cast<char>(unit);
        else if (strays_ != Base64Strays::Ignore)
            throwParseError();
    }
    return decodeFromString(narrow, target);
}

}  // namespace owlkit
