// Numbers: what is formatted reads back, any text gives the same in both widths, and what the parsers say
// about a text agrees with each other and, for plain digits, with the standard library.
#include <charconv>

#include "foundation/text/number.h"
#include "fuzz/fuzz.h"

using fuzz::require;
using owlkit::NumberFormat;

namespace {

struct Parsed {
    std::uint32_t taken = 0;
    std::uint64_t value = 99;
    std::uint32_t radix = 0;
    bool negative = true;
    bool operator==(const Parsed&) const = default;
};

template <class View>
Parsed parse(View text, View separator, std::uint32_t radix) {
    Parsed result;
    result.radix = radix;
    result.taken = owlkit::parseNumber(text, separator, result.value, result.radix, result.negative);
    return result;
}

std::u16string widened(std::string_view text) {
    std::u16string wide;
    for (const char c : text)
        wide += static_cast<std::uint8_t>(c);
    return wide;
}

void formatted(std::int64_t value, NumberFormat format, std::int32_t width) {
    const std::string text = owlkit::formatNumber<char>(value, format, width);
    require(owlkit::formatNumber<char16_t>(value, format, width) == widened(text));
    if (format == NumberFormat::Boolean) {
        require(text == (value != 0 ? "true" : "false"));
        return;
    }
    require(width < 1 || width > 25 || text.size() >= static_cast<std::size_t>(width));
    const std::uint32_t radix = format == NumberFormat::UpperHex || format == NumberFormat::LowerHex ? 16
                                : format == NumberFormat::Octal                                      ? 8
                                                                                                     : 10;
    const Parsed parsed = parse<std::string_view>(text, {}, radix);
    require(parsed.taken == text.size());
    const bool isSigned = format < NumberFormat::UnsignedDecimal || format > NumberFormat::Boolean;
    require(parsed.negative == (isSigned && value < 0));
    require((parsed.negative ? 0 - parsed.value : parsed.value) == static_cast<std::uint64_t>(value));
}

void digits(std::string_view text) {
    std::uint64_t expected = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, expected);
    // ':' to '@' and letters come behind the digits in ours.
    if (read.ec != std::errc() || (read.ptr != end && *read.ptr != ' '))
        return;
    const Parsed parsed = parse(text, std::string_view(), 10);
    require(parsed.value == expected);
    require(parsed.taken == static_cast<std::size_t>(read.ptr - text.data()));
}

template <class View>
void in32Bits(View text, std::uint32_t radix, View separator) {
    const Parsed parsed = parse(text, separator, radix);
    std::int32_t value = 7;
    const std::uint32_t taken = owlkit::parseInt32(text, value, radix, separator);
    std::uint32_t bits = 7;
    const std::uint32_t takenBits = owlkit::parseUInt32(text, bits, radix, separator);
    require(taken == parsed.taken || taken == owlkit::kParseOverflow);
    require(takenBits == parsed.taken || takenBits == owlkit::kParseOverflow);
    const bool good = taken != 0 && taken != owlkit::kParseOverflow;
    const bool goodBits = takenBits != 0 && takenBits != owlkit::kParseOverflow;
    require(good || value == 7);
    require(goodBits ? bits == parsed.value && !parsed.negative : bits == 7);
    require(!good || static_cast<std::uint32_t>(value) ==
                         static_cast<std::uint32_t>(parsed.negative ? 0 - parsed.value : parsed.value));
    require(owlkit::parseInt32Or(text, -3, radix, separator) == (good ? value : -3));
}

void any(const std::string& text, const std::string& separator, std::uint32_t radix) {
    const std::u16string wide = widened(text);
    const std::u16string wideSeparator = widened(separator);
    const bool valid = radix == 0 || (radix >= 2 && radix <= 36);
    if (!valid) {
        require(fuzz::error([&] { parse<std::string_view>(text, separator, radix); }) == "invalid radix");
        return;
    }
    const Parsed parsed = parse<std::string_view>(text, separator, radix);
    require(parsed == parse<std::u16string_view>(wide, wideSeparator, radix));
    const bool found = parsed.taken != 0 && parsed.taken != owlkit::kParseOverflow;
    require(!found || parsed.taken <= text.size());
    require(found || (parsed.value == 0 && !parsed.negative && parsed.radix == radix));
    // What follows the number has no say, except that one more digit or a prefix may.
    if (found)
        require(parse<std::string_view>(text.substr(0, parsed.taken), separator, radix).value ==
                parsed.value);
    in32Bits<std::string_view>(text, radix, separator);
    in32Bits<std::u16string_view>(fuzz::wide(text), radix, wideSeparator);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const auto value = input.ConsumeIntegral<std::int64_t>() >> input.ConsumeIntegralInRange(0, 63);
    formatted(value, static_cast<NumberFormat>(input.ConsumeIntegralInRange<std::uint32_t>(0, 6)),
              input.ConsumeIntegral<std::int8_t>());
    const std::uint32_t radix = input.ConsumeIntegralInRange<std::uint32_t>(0, 37);
    const std::string separator = input.ConsumeRandomLengthString(2);
    const std::string text = input.ConsumeRemainingBytesAsString();
    any(text, separator, radix);
    digits(text);
    return 0;
}
