#include "foundation/stream/text_units.h"

#include <bit>
#include <cstring>

#include "foundation/charset/convert.h"
#include "foundation/stream/archive.h"
#include "foundation/text/utf16.h"

namespace owlkit {
namespace {

static_assert(std::endian::native == std::endian::little, "scalars are laid out by copying their memory");

char16_t swapped(char16_t unit) {
    return static_cast<char16_t>(unit << 8 | unit >> 8);
}

std::string encodeUtf16(std::u16string_view text, bool bigEndian) {
    std::string bytes(text.size() * 2, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = bigEndian ? swapped(text[i]) : text[i];
        std::memcpy(&bytes[i * 2], &unit, 2);
    }
    return bytes;
}

std::u16string decodeUtf16(std::string_view bytes, bool bigEndian) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        char16_t unit;
        std::memcpy(&unit, bytes.data() + i * 2, 2);
        text[i] = bigEndian ? swapped(unit) : unit;
    }
    return text;
}

std::string encodeUtf32(std::u16string_view text, bool bigEndian) {
    std::string bytes;
    bytes.reserve(text.size() * 4);
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (isHighSurrogate(code) && i + 1 < text.size() && isLowSurrogate(text[i + 1]))
            code = fromSurrogates(code, text[++i]);
        appendUnit(bytes, code, 4, bigEndian);
    }
    return bytes;
}

std::u16string decodeUtf32(std::string_view bytes, bool bigEndian) {
    std::u16string text;
    text.reserve(bytes.size() / 4);
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        std::uint32_t code = 0;
        for (std::size_t k = 0; k < 4; ++k)
            code = code << 8 | static_cast<std::uint8_t>(bytes[i + (bigEndian ? k : 3 - k)]);
        if (code > kLastCharacter) {
            text += u'?';
        } else if (code >= kFirstSupplementary) {
            text += highSurrogateOf(code);
            text += lowSurrogateOf(code);
        } else {
            text += static_cast<char16_t>(code);
        }
    }
    return text;
}

}  // namespace

bool isUnconverted(const TextFormat& format) {
    return format.encoding == TextEncoding::None || format.encoding > TextEncoding::Charset;
}

std::size_t unitWidth(const TextFormat& format, bool wide) {
    if (format.encoding == TextEncoding::Utf16)
        return 2;
    if (format.encoding == TextEncoding::Utf32)
        return 4;
    return isUnconverted(format) && wide ? 2 : 1;
}

std::string encodeUnits(std::u16string_view text, const TextFormat& format) {
    switch (format.encoding) {
        case TextEncoding::Utf8:
            return ToNarrow(text, kCharsetUtf8);
        case TextEncoding::Utf32:
            return encodeUtf32(text, format.bigEndian);
        case TextEncoding::Charset:
            return ToNarrow(text, format.charset);
        case TextEncoding::None:
        case TextEncoding::Utf16:
            break;
    }
    return encodeUtf16(text, format.bigEndian && !isUnconverted(format));
}

std::u16string decodeUnits(std::string_view bytes, const TextFormat& format) {
    switch (format.encoding) {
        case TextEncoding::Utf8:
            return ToWide(bytes, kCharsetUtf8);
        case TextEncoding::Utf32:
            return decodeUtf32(bytes, format.bigEndian);
        case TextEncoding::Charset:
            return ToWide(bytes, format.charset);
        case TextEncoding::None:
        case TextEncoding::Utf16:
            break;
    }
    return decodeUtf16(bytes, format.bigEndian && !isUnconverted(format));
}

void appendUnit(std::string& bytes, std::uint32_t unit, std::size_t width, bool bigEndian) {
    for (std::size_t i = 0; i < width; ++i)
        bytes += static_cast<char>(unit >> 8 * (bigEndian ? width - 1 - i : i));
}

std::size_t findUnit(const std::uint8_t* units, std::size_t count, std::size_t width, const char* wanted) {
    if (width == 1) {
        const void* found = std::memchr(units, static_cast<unsigned char>(*wanted), count);
        return found == nullptr ? count
                                : static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - units);
    }
    std::size_t index = 0;
    while (index < count && std::memcmp(units + index * width, wanted, width) != 0)
        ++index;
    return index;
}

}  // namespace owlkit
