#include "foundation/stream/byte_stream.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "foundation/charset/convert.h"

namespace owlkit {
namespace {

constexpr std::int64_t kSkipBlock = 65536;

constexpr std::array<std::uint32_t, 256> makeCheckTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = value >> 1 ^ ((value & 1) != 0 ? 0xEDB88320u : 0);
        table[byte] = value;
    }
    return table;
}
constexpr std::array<std::uint32_t, 256> kCheckTable = makeCheckTable();

bool isUtf8(std::string_view bytes) {
    bool failed = false;
    ToWide(bytes, kCharsetUtf8, ErrorPolicy::Stop, u'?', &failed);
    return !failed;
}

// Whether `bytes` is UTF-8 up to a last character that the cut may have left incomplete.
bool isCutUtf8(std::string_view bytes) {
    std::size_t start = bytes.size();
    while (start > 0 && bytes.size() - start < 3 &&
           (static_cast<std::uint8_t>(bytes[start - 1]) & 0xC0) == 0x80)
        --start;
    const std::uint8_t lead = start > 0 ? static_cast<std::uint8_t>(bytes[start - 1]) : 0;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    const std::size_t present = bytes.size() - start + 1;
    if (start == 0 || present >= length)
        return isUtf8(bytes);
    // Incomplete, so good if the least or the greatest continuation makes it a character.
    const std::string cut(bytes.substr(start - 1));
    return isUtf8(bytes.substr(0, start - 1)) && (isUtf8(cut + std::string(length - present, '\x80')) ||
                                                  isUtf8(cut + std::string(length - present, '\xBF')));
}

}  // namespace

bool ByteStream::isSeekable() const {
    return true;
}

std::int64_t ByteStream::remaining() const {
    return size() - position();
}

bool ByteStream::atEnd() const {
    return isOpen() && remaining() == 0;
}

std::int64_t ByteStream::maximumSize() const {
    return std::numeric_limits<std::int64_t>::max();
}

std::int64_t ByteStream::seekTarget(std::int64_t offset, SeekOrigin origin) const {
    const auto from = [&](std::int64_t base) {
        return offset >= -base && offset <= size() - base ? base + offset : -1;
    };
    switch (origin) {
        case SeekOrigin::Start:
            return from(0);
        case SeekOrigin::Position:
            return from(position());
        case SeekOrigin::End:
            return from(size());
    }
    return -1;
}

std::int64_t ByteStream::skip(std::int64_t count) {
    const std::int64_t wanted = count < 0 ? remaining() : count;
    std::vector<std::uint8_t> block(static_cast<std::size_t>(std::min(wanted, kSkipBlock)));
    std::int64_t total = 0;
    while (total < wanted) {
        const std::size_t got =
            read(block.data(), static_cast<std::size_t>(std::min(wanted - total, kSkipBlock)));
        if (got == 0)
            break;
        for (std::size_t i = 0; i < got; ++i)
            skipCheck_ = skipCheck_ >> 8 ^ kCheckTable[(skipCheck_ ^ block[i]) & 0xFF];
        total += static_cast<std::int64_t>(got);
    }
    return total;
}

bool ByteStream::detectByteOrderMark() {
    const std::int64_t start = position();
    std::uint32_t mark = 0;
    for (int count = 1; count <= 4; ++count) {
        unsigned char byte = 0;
        if (readByte(byte) == 0)
            break;
        mark = mark << 8 | byte;
        TextEncoding encoding = TextEncoding::None;
        ByteOrder order = ByteOrder::Native;
        if (count == 2 && (mark == 0xFEFF || mark == 0xFFFE)) {
            encoding = TextEncoding::Utf16;
            order = mark == 0xFEFF ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
        } else if (count == 3 && mark == 0xEFBBBF) {
            encoding = TextEncoding::Utf8;
        } else if (count == 4 && mark == 0x0000FEFF) {
            encoding = TextEncoding::Utf32;
            order = ByteOrder::BigEndian;
        }
        if (encoding != TextEncoding::None) {
            setTextEncoding(encoding);
            setByteOrder(order);
            return true;
        }
    }
    static_cast<void>(seek(start, SeekOrigin::Start));  // who needs the position looks where it is
    return false;
}

bool ByteStream::detectTextEncoding(std::size_t sampleSize) {
    if (!isReadable())
        return false;
    const std::int64_t start = position();
    if (detectByteOrderMark())
        return true;
    if (position() != start)
        return false;
    const std::uint64_t left = static_cast<std::uint64_t>(remaining());
    std::string sample(static_cast<std::size_t>(std::min<std::uint64_t>(sampleSize, left)), '\0');
    const bool wholeSample = read(sample.data(), sample.size()) == sample.size();
    if (!seek(start, SeekOrigin::Start) || !wholeSample)
        return false;
    if (sample.size() < left ? isCutUtf8(sample) : isUtf8(sample)) {
        setTextEncoding(TextEncoding::Utf8);
    } else {
        setTextEncoding(TextEncoding::Charset);
        setCharset(systemCharset());
    }
    return true;
}

bool ByteStream::writeByteOrderMark() {
    const bool bigEndian = byteOrder() == ByteOrder::BigEndian;
    std::string_view mark;
    if (textEncoding() == TextEncoding::Utf8)
        mark = "\xEF\xBB\xBF";
    else if (textEncoding() == TextEncoding::Utf16)
        mark = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    else if (textEncoding() == TextEncoding::Utf32)
        mark = bigEndian ? std::string_view("\0\0\xFE\xFF", 4) : std::string_view("\xFF\xFE\0\0", 4);
    else
        return false;
    for (const char byte : mark)
        if (writeValue8(static_cast<std::uint8_t>(byte)) == 0)
            return false;
    return true;
}

void ByteStream::swapByteStream(ByteStream& other) noexcept {
    swapArchive(other);
    std::swap(skipCheck_, other.skipCheck_);
}

}  // namespace owlkit
