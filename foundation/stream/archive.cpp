#include "foundation/stream/archive.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"
#include "foundation/stream/text_units.h"

namespace owlkit {
namespace {

constexpr std::int64_t kCopyBlock = 65536;
constexpr std::size_t kTextReserve = 65536;      // units
constexpr std::uint32_t kRawLimit = 0xFFFFFFFF;  // the first length that a raw string cannot have
constexpr std::uint32_t kNoStop = 0xFFFFFFFF;

ByteOrder normalOrder(ByteOrder order) {
    return order == ByteOrder::Native ? ByteOrder::LittleEndian : order;
}

StringTerminator normalTerminator(StringTerminator terminator) {
    return terminator == StringTerminator::CrLfAlias ? StringTerminator::CrLf : terminator;
}

// The unit at which a text ends.
std::uint32_t stopUnit(StringTerminator terminator) {
    switch (terminator) {
        case StringTerminator::Nul:
            return 0;
        case StringTerminator::Lf:
        case StringTerminator::CrLf:
        case StringTerminator::CrLfAlias:
            return u'\n';
        case StringTerminator::Cr:
            return u'\r';
        case StringTerminator::None:
            break;
    }
    return kNoStop;
}

}  // namespace

void Archive::copySettings(const Archive& other) {
    setSettings(other.settings());
}

void Archive::setSettings(const StreamSettings& settings) {
    setByteOrder(settings.byteOrder);
    setStringTerminator(settings.stringTerminator);
    setTextEncoding(settings.textEncoding);
    setCharset(settings.charset);
}

bool Archive::settingsCompatible(const Archive& other) const {
    return normalOrder(byteOrder()) == normalOrder(other.byteOrder()) &&
           normalTerminator(stringTerminator()) == normalTerminator(other.stringTerminator()) &&
           textEncoding() == other.textEncoding() &&
           (textEncoding() != TextEncoding::Charset || charset() == other.charset());
}

bool Archive::isOpen() const {
    return isReadable() || isWritable();
}
bool Archive::isSeekable() const {
    return false;
}
ByteOrder Archive::byteOrder() const {
    return byteOrder_;
}
void Archive::setByteOrder(ByteOrder order) {
    byteOrder_ = order;
}
StringTerminator Archive::stringTerminator() const {
    return stringTerminator_;
}
void Archive::setStringTerminator(StringTerminator terminator) {
    stringTerminator_ = terminator;
}
TextEncoding Archive::textEncoding() const {
    return textEncoding_;
}
void Archive::setTextEncoding(TextEncoding encoding) {
    textEncoding_ = encoding;
}
CharsetCode Archive::charset() const {
    return charset_;
}

void Archive::swapArchive(Archive& other) noexcept {
    std::swap(ahead_, other.ahead_);
    std::swap(aheadEnd_, other.aheadEnd_);
    std::swap(byteOrder_, other.byteOrder_);
    std::swap(stringTerminator_, other.stringTerminator_);
    std::swap(textEncoding_, other.textEncoding_);
    std::swap(charset_, other.charset_);
}

std::int64_t Archive::readInto(Archive& target, std::int64_t count) {
    return target.copyFrom(*this, count);
}

std::int64_t Archive::copyFrom(Archive& source, std::int64_t count) {
    std::int64_t left = count < 0 ? source.remaining() : count;
    std::vector<std::uint8_t> block(static_cast<std::size_t>(std::min(left, kCopyBlock)));
    std::int64_t total = 0;
    std::int64_t written = 0;
    do {
        const std::size_t wanted = static_cast<std::size_t>(std::min(left, kCopyBlock));
        const std::size_t got = source.read(block.data(), wanted);
        written = static_cast<std::int64_t>(write(block.data(), got));
        total += written;
        left -= written;
    } while (written == kCopyBlock);
    return total;
}

std::size_t Archive::readRaw(std::string& target, std::uint32_t maxLength) {
    target.clear();
    std::uint32_t length = 0;
    if (remaining() < static_cast<std::int64_t>(sizeof length))
        return 0;
    const std::size_t prefix = readInt32(length);
    if (prefix < sizeof length)
        return prefix;
    if (length > maxLength)
        throwReadStringTooLarge();
    // Not more than there is: a damaged length must not cost its memory.
    target.resize(static_cast<std::size_t>(std::min<std::int64_t>(length, remaining())));
    const std::size_t got = read(target.data(), target.size());
    target.resize(got);
    return prefix + got;
}

std::size_t Archive::readRaw(std::u16string& target, std::uint32_t maxLength) {
    target.clear();
    std::string bytes;
    const std::size_t consumed = readRaw(bytes, maxLength);
    target = ToWide(bytes, kCharsetSystem);
    return consumed;
}

std::size_t Archive::writeRaw(std::string_view text) {
    if (text.size() >= kRawLimit)
        throwSizeError();
    const std::size_t prefix = writeValue32(static_cast<std::uint32_t>(text.size()));
    if (prefix < sizeof(std::uint32_t) || text.empty())
        return prefix;
    return prefix + write(text.data(), text.size());
}

std::size_t Archive::writeRaw(std::u16string_view text) {
    return writeRaw(std::string_view(ToNarrow(text, kCharsetSystem)));
}

TextFormat Archive::textFormat() const {
    return {textEncoding(), charset(), byteOrder() == ByteOrder::BigEndian};
}

// Collects the bytes of a text without its terminator and gives the number of units consumed.
std::int64_t Archive::readUnits(std::string& bytes, std::size_t width, std::int64_t maxCount) {
    const TextFormat format = textFormat();
    const bool bigEndian = format.bigEndian && !isUnconverted(format);
    const std::uint32_t stop = stopUnit(stringTerminator());
    std::string stopBytes;
    appendUnit(stopBytes, stop, width, bigEndian);
    std::int64_t consumed = 0;
    bool stopped = false;
    while (!stopped && (maxCount < 0 || consumed < maxCount)) {
        std::size_t units = aheadCount() / width;
        if (units == 0) {
            std::uint8_t unit[4];
            if (read(unit, width) < width)
                break;
            ++consumed;
            stopped = stop != kNoStop && findUnit(unit, 1, width, stopBytes.data()) == 0;
            if (!stopped)
                bytes.append(reinterpret_cast<const char*>(unit), width);
            continue;
        }
        if (maxCount >= 0)
            units = static_cast<std::size_t>(
                std::min<std::int64_t>(static_cast<std::int64_t>(units), maxCount - consumed));
        const std::size_t found = stop == kNoStop ? units : findUnit(ahead_, units, width, stopBytes.data());
        stopped = found < units;
        bytes.append(reinterpret_cast<const char*>(ahead_), found * width);
        const std::size_t taken = found + (stopped ? 1 : 0);
        ahead_ += taken * width;
        consumed += static_cast<std::int64_t>(taken);
    }
    if (stopped && stop == u'\n') {
        std::string carriageReturn;
        appendUnit(carriageReturn, u'\r', width, bigEndian);
        if (bytes.ends_with(carriageReturn))
            bytes.resize(bytes.size() - width);
    }
    return consumed;
}

std::int64_t Archive::readText(std::u16string& target, std::int64_t maxCount) {
    target.clear();
    if (maxCount < 0)
        target.reserve(kTextReserve);
    const TextFormat format = textFormat();
    std::string bytes;
    const std::int64_t consumed = readUnits(bytes, unitWidth(format, true), maxCount);
    target.append(decodeUnits(bytes, format));
    return consumed;
}

std::int64_t Archive::readText(std::string& target, std::int64_t maxCount) {
    target.clear();
    if (maxCount < 0)
        target.reserve(kTextReserve);
    const TextFormat format = textFormat();
    std::string bytes;
    const std::int64_t consumed = readUnits(bytes, unitWidth(format, false), maxCount);
    target.append(isUnconverted(format) ? bytes : ToNarrow(decodeUnits(bytes, format), kCharsetSystem));
    return consumed;
}

// Appends the terminator and writes the whole.
std::int64_t Archive::writeUnits(std::string bytes, std::size_t width) {
    const TextFormat format = textFormat();
    const bool bigEndian = format.bigEndian && !isUnconverted(format);
    const StringTerminator terminator = normalTerminator(stringTerminator());
    if (terminator == StringTerminator::CrLf)
        appendUnit(bytes, u'\r', width, bigEndian);
    if (const std::uint32_t stop = stopUnit(terminator); stop != kNoStop)
        appendUnit(bytes, stop, width, bigEndian);
    return static_cast<std::int64_t>(write(bytes.data(), bytes.size()));
}

std::int64_t Archive::writeText(std::u16string_view text) {
    const TextFormat format = textFormat();
    return writeUnits(encodeUnits(text, format), unitWidth(format, true));
}

std::int64_t Archive::writeText(std::string_view text) {
    const TextFormat format = textFormat();
    return writeUnits(
        isUnconverted(format) ? std::string(text) : encodeUnits(ToWide(text, kCharsetSystem), format),
        unitWidth(format, false));
}

}  // namespace owlkit
