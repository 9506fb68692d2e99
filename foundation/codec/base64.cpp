#include "foundation/codec/base64.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "foundation/errors.h"
#include "foundation/stream/memory_stream.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kPadding = 64;  // the place of "=" in the alphabets
constexpr std::uint32_t kSkipped = 65;
constexpr std::string_view kStandardLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
constexpr std::string_view kUrlLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_=";

// Streams are read and written in blocks: one of a few bytes may cost a platform call.
constexpr std::int64_t kBlock = 3 * 4096;

// Writes `out` and empties it; whether all of it was written.
bool drain(std::string& out, ByteStream& target, std::int64_t& total) {
    const std::size_t written = out.empty() ? 0 : target.write(out.data(), out.size());
    total += static_cast<std::int64_t>(written);
    const bool whole = written == out.size();
    out.clear();
    return whole;
}

}  // namespace

char Base64Codec::letter(std::uint32_t sextet) const {
    if (sextet > kPadding)
        throwFailed();
    return (alphabet_ == kBase64Url ? kUrlLetters : kStandardLetters)[sextet];
}

std::uint32_t Base64Codec::sextet(std::size_t position) const {
    switch (position) {
        case 0:
            return group_[0] >> 2;
        case 1:
            return (group_[0] & 0x03u) << 4 | group_[1] >> 4;
        case 2:
            return (group_[1] & 0x0Fu) << 2 | group_[2] >> 6;
        case 3:
            return group_[2] & 0x3Fu;
        default:
            throwFailed();
    }
}

// Appends the letters of the group's first `bytes` bytes, and the padding.
void Base64Codec::encodeGroup(std::size_t bytes, std::string& out) {
    for (std::size_t i = 0; i <= bytes; ++i)
        out += letter(sextet(i));
    if (alphabet_ != kBase64Url)
        out.append(3 - bytes, letter(kPadding));
}

std::int64_t Base64Codec::encode(ByteStream& source, ByteStream& target, std::int64_t count) {
    const bool breaksLines = alphabet_ != kBase64Url && lineLength_ > 0;
    std::vector<std::uint8_t> block(static_cast<std::size_t>(kBlock));
    std::string out;
    std::int64_t total = 0;
    std::int64_t column = 0;
    std::int64_t left = count;
    while (left != 0) {
        const std::size_t wanted = static_cast<std::size_t>(left < 0 ? kBlock : std::min(left, kBlock));
        const std::size_t got = source.read(block.data(), wanted);
        for (std::size_t i = 0; i < got; i += 3) {
            const std::size_t bytes = std::min<std::size_t>(3, got - i);
            std::fill(std::begin(group_), std::end(group_), std::uint8_t{0});
            std::copy_n(block.data() + i, bytes, group_);
            encodeGroup(bytes, out);
            column += 4;
            if (breaksLines && column >= lineLength_) {
                out += '\n';
                column = 0;
            }
        }
        if (!drain(out, target, total) || got < static_cast<std::size_t>(kBlock))
            break;
        if (left > 0)
            left -= static_cast<std::int64_t>(got);
    }
    return total;
}

std::uint32_t Base64Codec::sextetOf(unsigned char letter) const {
    const std::string_view letters = alphabet_ == kBase64Url ? kUrlLetters : kStandardLetters;
    const std::size_t place = letters.find(static_cast<char>(letter));
    if (place != std::string_view::npos)
        return static_cast<std::uint32_t>(place);
    const bool lineBreak = letter == '\n' || letter == '\r';
    if (strayPolicy_ == kIgnoreStrays || (strayPolicy_ == kIgnoreLineBreaks && lineBreak))
        return kSkipped;
    throwParseError();
}

void Base64Codec::placeSextet(std::size_t position, std::uint32_t sextet) {
    if (sextet >= kPadding)
        throwFailed();
    switch (position) {
        case 0:
            group_[0] = static_cast<std::uint8_t>(sextet << 2);
            break;
        case 1:
            group_[0] |= static_cast<std::uint8_t>(sextet >> 4);
            group_[1] = static_cast<std::uint8_t>(sextet << 4);
            break;
        case 2:
            group_[1] |= static_cast<std::uint8_t>(sextet >> 2);
            group_[2] = static_cast<std::uint8_t>(sextet << 6);
            break;
        case 3:
            group_[2] |= static_cast<std::uint8_t>(sextet);
            break;
        default:
            throwFailed();
    }
}

// Reads the next group and gives the number of its sextets; `left` is the number of characters that may still
// be read, negative for any.
std::size_t Base64Codec::decodeGroup(ByteStream& source, std::int64_t& left) {
    std::fill(std::begin(group_), std::end(group_), std::uint8_t{0});
    std::size_t sextets = 0;
    while (sextets < 4 && left != 0) {
        unsigned char character = 0;
        if (source.readByte(character) == 0)
            break;
        if (left > 0)
            --left;
        const std::uint32_t value = sextetOf(character);
        if (value < kPadding)
            placeSextet(sextets++, value);
        else if (value == kPadding && sextets >= 2)
            break;
    }
    return sextets;
}

std::int64_t Base64Codec::decode(ByteStream& source, ByteStream& target, std::int64_t count) {
    std::string out;
    std::int64_t total = 0;
    std::int64_t left = count;
    std::size_t sextets = 4;
    try {
        while (sextets == 4) {
            sextets = decodeGroup(source, left);
            if (sextets != 0)
                out.append(reinterpret_cast<const char*>(group_), std::max<std::size_t>(sextets - 1, 1));
            if (out.size() >= static_cast<std::size_t>(kBlock) && !drain(out, target, total))
                return total;
        }
    } catch (...) {
        drain(out, target, total);
        throw;
    }
    drain(out, target, total);
    return total;
}

std::size_t Base64Codec::encodeToString(ByteStream& source, std::string& target, std::int64_t count) {
    MemoryStream encoded;
    encode(source, encoded, count);
    const std::uint8_t* letters = encoded.data();
    target.assign(letters, letters + encoded.size());
    return target.size();
}

std::size_t Base64Codec::encodeToString(ByteStream& source, std::u16string& target, std::int64_t count) {
    MemoryStream encoded;
    encode(source, encoded, count);
    const std::uint8_t* letters = encoded.data();
    target.assign(letters, letters + encoded.size());
    return target.size();
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
        else if (strayPolicy_ != kIgnoreStrays)
            throwParseError();
    }
    return decodeFromString(narrow, target);
}

}  // namespace owlkit
