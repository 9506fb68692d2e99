#include "foundation/charset/convert.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <type_traits>

#include "foundation/charset/single_byte_tables.h"
#include "foundation/errors.h"
#include "foundation/text/number.h"
#include "platform/locale.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kUtf8CodePage = 65001;
constexpr std::uint32_t kGb18030CodePage = 54936;
constexpr std::size_t kReserveDoubleAbove = 10;  // code units of UTF-8 output's source

bool isHigh(char32_t c) {
    return c >= 0xD800 && c < 0xDC00;
}
bool isLow(char32_t c) {
    return c >= 0xDC00 && c < 0xE000;
}

// Collects the result and remembers failures.
template <class Char>
class Output {
  public:
    using View = std::basic_string_view<Char>;

    void reserve(std::size_t count) {
        if (count > text_.max_size())
            throwStringTooLong();
        text_.reserve(count);
    }
    void add(View units) {
        if (units.size() > text_.max_size() - text_.size())
            throwStringTooLong();
        text_.append(units);
    }
    void add(std::uint32_t unit) {
        const auto c = static_cast<Char>(unit);
        add(View(&c, 1));
    }
    void addHex(std::uint32_t value, std::int32_t width) {
        add('x');
        add(formatNumber<Char>(value, kUpperHex, width));
    }

    // The part of the policies that is the same in both directions: returns whether the conversion goes on.
    bool goesOn(ErrorPolicy policy) {
        failed = true;
        if (policy == ErrorPolicy::Empty)
            text_.clear();
        return policy != ErrorPolicy::Empty && policy != ErrorPolicy::Stop;
    }

    std::basic_string<Char> take() { return std::move(text_); }

    bool failed = false;

  private:
    std::basic_string<Char> text_;
};

// One decoded character: `length` bytes were taken; 0 means that the first byte begins none.
struct Decoded {
    char32_t character = 0;
    std::size_t length = 0;
};

Decoded decodeUtf8(std::string_view bytes) {
    const auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const std::uint8_t lead = at(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >> 5 == 0x06 ? 2 : lead >> 4 == 0x0E ? 3 : lead >> 3 == 0x1E ? 4 : 0;
    if (length == 0 || length > bytes.size())
        return {};
    char32_t c = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (at(i) >> 6 != 2)
            return {};
        c = c << 6 | (at(i) & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kLeast[length] || c > 0x10FFFF)
        return {};
    return {c, length};
}

Decoded decodeOne(std::string_view bytes, CharsetCode charset) {
    if (charset == kCharsetUtf8)
        return decodeUtf8(bytes);
    const char16_t unit = decodeSingleByte(charset, static_cast<std::uint8_t>(bytes[0]));
    return {unit, unit == 0 ? std::size_t{0} : std::size_t{1}};
}

// Writes what the policy asks for in place of an undecodable byte; returns whether the conversion goes on.
bool replaceByte(Output<char16_t>& out, std::uint8_t byte, CharsetCode charset, ErrorPolicy policy,
                 char16_t replacement) {
    if (!out.goesOn(policy))
        return false;
    switch (policy) {
        case ErrorPolicy::Replace:
            if (replacement != 0)
                out.add(replacement);
            break;
        case ErrorPolicy::Fixed:
            out.add(0xFFFD);
            break;
        case ErrorPolicy::Hex:
            out.addHex(byte, 2);
            break;
        case ErrorPolicy::KeepByte:
            out.add(0xDC00u + byte);
            break;
        case ErrorPolicy::Latin1:
            if (charset == kCharsetUtf8)
                out.add(byte);
            break;
        default:
            break;
    }
    return true;
}

void decodeAll(Output<char16_t>& out, std::string_view text, CharsetCode charset, ErrorPolicy policy,
               char16_t replacement) {
    while (!text.empty()) {
        const Decoded next = decodeOne(text, charset);
        if (next.length == 0) {
            if (!replaceByte(out, static_cast<std::uint8_t>(text[0]), charset, policy, replacement))
                return;
        } else if (next.character < 0x10000) {
            out.add(next.character);
        } else {
            out.add(0xD800 + ((next.character - 0x10000) >> 10));
            out.add(0xDC00 + ((next.character - 0x10000) & 0x3FF));
        }
        text.remove_prefix(std::max<std::size_t>(next.length, 1));
    }
}

void decodeByPlatform(Output<char16_t>& out, std::string_view text, ErrorPolicy policy) {
    if (text.size() > std::numeric_limits<std::int32_t>::max())
        throwStringTooLong();  // the platform counts in 32 bits
    std::optional<std::u16string> wide =
        platform::multiByteToWide(text, platform::kMultiByteErrorInvalidCharacters);
    if (!wide) {
        out.failed = true;
        if (policy != ErrorPolicy::Empty)
            wide = platform::multiByteToWide(text, 0);
    }
    if (wide)
        out.add(*wide);
}

// Writes one character (`units` are its one or two code units); returns false when the charset cannot
// represent it.
using Encoder = bool (*)(Output<char>& out, char32_t c, std::u16string_view units, CharsetCode charset,
                         ErrorPolicy policy);

bool encodeUtf8(Output<char>& out, char32_t c, std::u16string_view, CharsetCode, ErrorPolicy policy) {
    // Otherwise the bytes that ToWide kept would not come back.
    if (policy == ErrorPolicy::KeepByte && c >= 0xDC80 && c <= 0xDCFF)
        return false;
    const auto tail = [&](unsigned shift) { out.add(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        out.add(c);
    } else if (c < 0x800) {
        out.add(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        out.add(0xE0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        out.add(0xF0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
    return true;
}

bool encodeByTable(Output<char>& out, char32_t c, std::u16string_view, CharsetCode charset, ErrorPolicy) {
    const std::uint8_t byte =
        c < 0x10000 ? encodeSingleByte(charset, static_cast<char16_t>(c)) : std::uint8_t{0};
    if (byte == 0)
        return false;
    out.add(byte);
    return true;
}

// WideCharToMultiByte such that it fails where a character has no exact counterpart.
std::optional<std::string> strictByPlatform(std::u16string_view units) {
    // In these two the call takes neither the best-fit flag nor the question about the default character.
    const std::optional<std::uint32_t> codePage = platform::ansiCodePage();
    if (codePage == kUtf8CodePage || codePage == kGb18030CodePage)
        return platform::wideToMultiByte(units, platform::kWideErrorInvalidCharacters, nullptr);
    bool usedDefault = false;
    std::optional<std::string> narrow =
        platform::wideToMultiByte(units, platform::kWideNoBestFitCharacters, &usedDefault);
    return usedDefault ? std::nullopt : narrow;
}

bool encodeByPlatform(Output<char>& out, char32_t, std::u16string_view units, CharsetCode, ErrorPolicy) {
    const std::optional<std::string> narrow = strictByPlatform(units);
    if (narrow)
        out.add(*narrow);
    return narrow.has_value();
}

// Writes what the policy asks for in place of a character; returns whether the conversion goes on.
bool replaceCharacter(Output<char>& out, char32_t c, bool byPlatform, ErrorPolicy policy, char replacement) {
    if (!out.goesOn(policy))
        return false;
    switch (policy) {
        case ErrorPolicy::Replace:
            if (replacement != 0)
                out.add(static_cast<std::uint8_t>(replacement));
            break;
        case ErrorPolicy::Fixed:
            out.add(0x1A);
            break;
        case ErrorPolicy::Hex:
            // Deliberate: the platform's conversion marks every character that fails alike.
            out.addHex(byPlatform ? 0xFFFD : c, !byPlatform && c >= 0x10000 ? 6 : 4);
            break;
        case ErrorPolicy::KeepByte:
            if (c >= 0xDC00 && c <= 0xDCFF)
                out.add(c & 0xFF);
            break;
        default:
            break;
    }
    return true;
}

void encodeAll(Output<char>& out, std::u16string_view text, CharsetCode charset, ErrorPolicy policy,
               char replacement) {
    const bool byPlatform = charset == kCharsetPlatform;
    const Encoder encode = byPlatform                ? &encodeByPlatform
                           : charset == kCharsetUtf8 ? &encodeUtf8
                                                     : &encodeByTable;
    while (!text.empty()) {
        const bool pair = text.size() > 1 && isHigh(text[0]) && isLow(text[1]);
        const char32_t c = pair ? 0x10000 + ((text[0] - 0xD800u) << 10) + (text[1] - 0xDC00u) : text[0];
        const std::u16string_view units = text.substr(0, pair ? 2 : 1);
        if (!encode(out, c, units, charset, policy) &&
            !replaceCharacter(out, c, byPlatform, policy, replacement))
            return;
        text.remove_prefix(units.size());
    }
}

// The charset that converts: the system's for kCharsetSystem, kCharsetPlatform where that is not one of the
// table.
CharsetCode resolved(CharsetCode charset) {
    if (charset > kCharsetDos850 && charset != kCharsetPlatform)
        throwInvalidConversion();
    if (charset == kCharsetSystem)
        charset = systemCharset();
    return charset == kCharsetSystem ? kCharsetPlatform : charset;
}

}  // namespace

std::u16string ToWide(std::string_view text, CharsetCode charset, ErrorPolicy policy, char16_t replacement,
                      bool* failed) {
    charset = resolved(charset);
    Output<char16_t> out;
    if (charset == kCharsetPlatform)
        decodeByPlatform(out, text, policy);
    else
        decodeAll(out, text, charset, policy, replacement);
    if (failed != nullptr)
        *failed = out.failed;
    return out.take();
}

std::string ToNarrow(std::u16string_view text, CharsetCode charset, ErrorPolicy policy, char replacement,
                     bool* failed) {
    charset = resolved(charset);
    Output<char> out;
    if (charset == kCharsetUtf8 && text.size() > kReserveDoubleAbove) {
        if (text.size() > std::numeric_limits<std::size_t>::max() / 2)
            throwStringTooLong();
        out.reserve(2 * text.size());
    }
    // The whole text in one call first; character by character only where that fails.
    const std::optional<std::string> whole =
        charset == kCharsetPlatform ? strictByPlatform(text) : std::optional<std::string>{};
    if (whole)
        out.add(*whole);
    else
        encodeAll(out, text, charset, policy, replacement);
    if (failed != nullptr)
        *failed = out.failed;
    return out.take();
}

}  // namespace owlkit
