#include "foundation/text/number.h"

#include <array>
#include <cstring>
#include <iterator>
#include <type_traits>

#include "foundation/errors.h"

namespace owlkit {
namespace {

// The header promises that a width above it fills nothing.
constexpr std::int32_t kMaximumWidth = 25;

constexpr std::uint32_t kNoDigit = 0xFFFFFFFF;

template <class Char>
std::uint32_t codeOf(Char c) {
    return static_cast<std::make_unsigned_t<Char>>(c);
}

// The first range that matches decides. So the codes 58 to 64 and U+FF1A to U+FF20 come out as the digits 10
// to 16, as the header promises.
std::uint32_t digitOf(std::uint32_t code) {
    if (code > 65344)
        return code - 65335;
    if (code > 65312)
        return code - 65303;
    if (code > 65295)
        return code - 65296;
    if (code > 96)
        return code - 87;
    if (code > 64)
        return code - 55;
    return code >= 48 ? code - 48 : kNoDigit;
}

// "00" to "99".
constexpr std::array<char, 200> makePairs() {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = static_cast<char>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
    return pairs;
}
constexpr std::array<char, 200> kPairs = makePairs();

// The digits of `value`, which end at `end`; gives their start.
char* putDecimal(char* end, std::uint64_t value) {
    for (; value > 99; value /= 100)
        std::memcpy(end -= 2, &kPairs[value % 100 * 2], 2);
    if (value > 9)
        return static_cast<char*>(std::memcpy(end - 2, &kPairs[value * 2], 2));
    *--end = static_cast<char>('0' + value);
    return end;
}

char* putBinary(char* end, std::uint64_t value, unsigned bitsOfDigit, const char* digits) {
    do
        *--end = digits[value & ((1u << bitsOfDigit) - 1)];
    while ((value >>= bitsOfDigit) != 0);
    return end;
}

char* putDigits(char* end, std::uint64_t value, NumberFormat format) {
    switch (format) {
        case NumberFormat::UpperHex:
            return putBinary(end, value, 4, "0123456789ABCDEF");
        case NumberFormat::LowerHex:
            return putBinary(end, value, 4, "0123456789abcdef");
        case NumberFormat::Octal:
            return putBinary(end, value, 3, "01234567");
        case NumberFormat::SignedDecimal:
        case NumberFormat::UnsignedDecimal:
        case NumberFormat::Boolean:
            break;
    }
    return putDecimal(end, value);
}

bool isSigned(NumberFormat format) {
    return format < NumberFormat::UnsignedDecimal || format > NumberFormat::Octal;
}

// The walk over one text. Results are kept here and handed out only when the parse succeeded.
template <class Char>
class NumberParser {
  public:
    NumberParser(std::basic_string_view<Char> text, std::basic_string_view<Char> separator,
                 std::uint32_t radix)
        : text_(text), separator_(separator), radix_(radix) {}

    std::uint32_t parse() {
        while (at_ < text_.size()) {
            const std::uint32_t code = codeOf(text_[at_]);
            if (!started_ && (code == '+' || code == '-')) {
                negative_ = code == '-';
                started_ = true;
                ++at_;
            } else if (!started_ && isPrefix()) {
                if (radix_ != 0 && radix_ != 16)
                    return 0;
                radix_ = 16;
                started_ = true;
                at_ += 2;
            } else if (!started_ && isSpace(code)) {
                ++at_;
            } else if (started_ && !separator_.empty() && text_.substr(at_).starts_with(separator_)) {
                if (afterSeparator_)
                    return position(at_ - separator_.size());
                afterSeparator_ = true;
                at_ += separator_.size();
            } else {
                const std::uint32_t digit = digitOf(code);
                if (digit >= (radix_ == 0 ? 10 : radix_))
                    return started_ ? position(at_) : 0;
                if (!take(digit))
                    return kParseOverflow;
            }
        }
        return position(at_);
    }

    std::uint64_t value() const { return value_; }
    std::uint32_t radix() const { return radix_; }
    bool negative() const { return negative_; }

  private:
    bool isPrefix() const {
        return text_[at_] == '0' && at_ + 1 < text_.size() &&
               (text_[at_ + 1] == 'x' || text_[at_ + 1] == 'X');
    }

    bool take(std::uint32_t digit) {
        if (radix_ == 0)
            radix_ = 10;
        const std::uint64_t next = value_ * radix_ + digit;
        // No more than this: the header promises that an overflow that wraps to a larger value passes.
        if (next < value_)
            return false;
        value_ = next;
        started_ = true;
        afterSeparator_ = false;
        ++at_;
        return true;
    }

    static std::uint32_t position(std::size_t at) { return static_cast<std::uint32_t>(at); }

    std::basic_string_view<Char> text_;
    std::basic_string_view<Char> separator_;
    std::uint32_t radix_;
    std::size_t at_ = 0;
    std::uint64_t value_ = 0;
    bool negative_ = false;
    bool started_ = false;
    bool afterSeparator_ = false;
};

template <class Char>
std::uint32_t parseAny(std::basic_string_view<Char> text, std::basic_string_view<Char> separator,
                       std::uint64_t& value, std::uint32_t& radix, bool& negative) {
    if (radix != 0 && (radix < 2 || radix > 36))
        throwInvalidRadix();
    value = 0;
    negative = false;
    NumberParser<Char> parser(text, separator, radix);
    const std::uint32_t taken = parser.parse();
    if (taken == 0 || taken == kParseOverflow)
        return taken;
    value = parser.value();
    radix = parser.radix();
    negative = parser.negative();
    return taken;
}

bool found(std::uint32_t taken) {
    return static_cast<std::int32_t>(taken) > 0;
}

// What both 32-bit parsers begin with: a number of at most 32 bits, its sign apart. `radix` 0 becomes the one
// found.
template <class Char>
std::uint32_t parse32(std::basic_string_view<Char> text, std::uint32_t& bits, bool& negative,
                      std::uint32_t& radix, std::basic_string_view<Char> separator) {
    std::uint64_t magnitude = 0;
    const std::uint32_t taken = parseAny(text, separator, magnitude, radix, negative);
    if (!found(taken))
        return taken;
    bits = static_cast<std::uint32_t>(magnitude);
    return magnitude > 0xFFFFFFFF ? kParseOverflow : taken;
}

template <class Char>
std::uint32_t parseSigned(std::basic_string_view<Char> text, std::int32_t& value, std::uint32_t radix,
                          std::basic_string_view<Char> separator) {
    std::uint32_t bits = 0;
    bool negative = false;
    const std::uint32_t taken = parse32(text, bits, negative, radix, separator);
    if (!found(taken))
        return taken;
    if (negative)
        bits = 0 - bits;
    if (radix == 10 && (bits >> 31 != 0) != negative)
        return kParseOverflow;
    value = static_cast<std::int32_t>(bits);
    return taken;
}

template <class Char>
std::uint32_t parseUnsigned(std::basic_string_view<Char> text, std::uint32_t& value, std::uint32_t radix,
                            std::basic_string_view<Char> separator) {
    std::uint32_t bits = 0;
    bool negative = false;
    const std::uint32_t taken = parse32(text, bits, negative, radix, separator);
    if (!found(taken))
        return taken;
    if (negative)
        return kParseOverflow;
    value = bits;
    return taken;
}

template <class Char>
std::int32_t parseSignedOr(std::basic_string_view<Char> text, std::int32_t fallback, std::uint32_t radix,
                           std::basic_string_view<Char> separator) {
    std::int32_t value = 0;
    return found(parseSigned(text, value, radix, separator)) ? value : fallback;
}

}  // namespace

template <class Char>
std::basic_string<Char> formatNumber(std::int64_t value, NumberFormat format, std::int32_t width) {
    if (format == NumberFormat::Boolean) {
        const std::string_view word = value != 0 ? "true" : "false";
        return {word.begin(), word.end()};
    }
    const bool minus = value < 0 && isSigned(format);
    const auto bits = static_cast<std::uint64_t>(value);
    char buffer[kMaximumWidth];  // the longest digits are 22, octal
    char* const end = std::end(buffer);
    char* first = putDigits(end, minus ? 0 - bits : bits, format);
    if (width >= 1 && width <= kMaximumWidth)
        while (end - first + minus < width)
            *--first = '0';
    if (minus)
        *--first = '-';
    return {first, end};
}
template std::string formatNumber<char>(std::int64_t, NumberFormat, std::int32_t);
template std::u16string formatNumber<char16_t>(std::int64_t, NumberFormat, std::int32_t);

std::uint32_t parseNumber(std::string_view text, std::string_view separator, std::uint64_t& value,
                          std::uint32_t& radix, bool& negative) {
    return parseAny(text, separator, value, radix, negative);
}
std::uint32_t parseNumber(std::u16string_view text, std::u16string_view separator, std::uint64_t& value,
                          std::uint32_t& radix, bool& negative) {
    return parseAny(text, separator, value, radix, negative);
}

std::uint32_t parseInt32(std::string_view text, std::int32_t& value, std::uint32_t radix,
                         std::string_view separator) {
    return parseSigned(text, value, radix, separator);
}
std::uint32_t parseInt32(std::u16string_view text, std::int32_t& value, std::uint32_t radix,
                         std::u16string_view separator) {
    return parseSigned(text, value, radix, separator);
}

std::uint32_t parseUInt32(std::string_view text, std::uint32_t& value, std::uint32_t radix,
                          std::string_view separator) {
    return parseUnsigned(text, value, radix, separator);
}
std::uint32_t parseUInt32(std::u16string_view text, std::uint32_t& value, std::uint32_t radix,
                          std::u16string_view separator) {
    return parseUnsigned(text, value, radix, separator);
}

std::int32_t parseInt32Or(std::string_view text, std::int32_t fallback, std::uint32_t radix,
                          std::string_view separator) {
    return parseSignedOr(text, fallback, radix, separator);
}
std::int32_t parseInt32Or(std::u16string_view text, std::int32_t fallback, std::uint32_t radix,
                          std::u16string_view separator) {
    return parseSignedOr(text, fallback, radix, separator);
}

bool isSpace(std::uint32_t code, bool extended) {
    if (code < 33)
        return true;
    if (!extended)
        return false;
    if (code >= 8192 && code <= 8202)
        return true;
    switch (code) {
        case 133:
        case 5760:
        case 6158:
        case 8232:
        case 8233:
        case 8239:
        case 8287:
        case 12288:
            return true;
        default:
            return false;
    }
}

}  // namespace owlkit
