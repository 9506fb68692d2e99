// Numbers: any text gives the same in both widths, and what the parsers say about a text agrees with each
// other and, for plain digits, with the standard library.
#include <charconv>

#include "foundation/text/number.h"
#include "testing/fuzz.h"

using fuzz::require;

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

// What the 32-bit parser answers for the number found: that, too large, or nothing; then `value` is as
// before.
template <class Value>
bool gives(const Parsed& parsed, std::uint32_t taken, Value value, std::uint64_t expected) {
    require(taken == parsed.taken || taken == owlkit::kParseOverflow);
    const bool good = taken != 0 && taken != owlkit::kParseOverflow;
    require(value == (good ? static_cast<Value>(expected) : 7));
    return good;
}

template <class View>
void in32Bits(View text, std::uint32_t radix, View separator) {
    const Parsed parsed = parse(text, separator, radix);
    std::int32_t value = 7;
    const std::uint32_t taken = owlkit::parseInt32(text, value, radix, separator);
    const bool good = gives(parsed, taken, value, parsed.negative ? 0 - parsed.value : parsed.value);
    require(owlkit::parseInt32Or(text, -3, radix, separator) == (good ? value : -3));
    std::uint32_t bits = 7;
    const std::uint32_t takenBits = owlkit::parseUInt32(text, bits, radix, separator);
    require(!gives(parsed, takenBits, bits, parsed.value) || (bits == parsed.value && !parsed.negative));
}

void any(const std::string& text, const std::string& separator, std::uint32_t radix) {
    if (radix == 1 || radix > 36)
        return require(test::errorOf([&] { parse<std::string_view>(text, separator, radix); }) ==
                       "invalid radix");
    const std::u16string wideSeparator = fuzz::widened(separator);
    const Parsed parsed = parse<std::string_view>(text, separator, radix);
    require(parsed == parse<std::u16string_view>(fuzz::widened(text), wideSeparator, radix));
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
    const std::uint32_t radix = fuzz::pick(input, 37);
    const std::string separator = input.ConsumeRandomLengthString(2);
    const std::string text = input.ConsumeRemainingBytesAsString();
    any(text, separator, radix);
    digits(text);
    return 0;
}
