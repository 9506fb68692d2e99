#include "foundation/text/number.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <tuple>

#include "testing/errors.h"
#include "testing/text.h"

namespace owlkit {
namespace {

using test::widened;

TEST(FormatNumber, AgreesWithPrintf) {
    constexpr std::int64_t kValues[] = {0,         9,        10, 99, 100, -1, 257, -257, 1234567890123,
                                        INT64_MAX, INT64_MIN};
    constexpr const char* kPlain[] = {"%" PRId64, "%" PRIu64, "%" PRIX64, "%" PRIx64, "%" PRIo64};
    constexpr const char* kPadded[] = {"%0*" PRId64, "%0*" PRIu64, "%0*" PRIX64, "%0*" PRIx64, "%0*" PRIo64};
    for (const std::int64_t value : kValues) {
        for (const std::uint32_t format : {0u, 1u, 2u, 3u, 4u, 6u, 0xFFFFFFFFu}) {
            for (std::int32_t width = -1; width <= 27; ++width) {
                SCOPED_TRACE(testing::Message() << value << " format " << format << " width " << width);
                const std::uint32_t row = format > 4 ? 0 : format;
                char expected[64];
                if (width >= 1 && width <= 25)
                    std::snprintf(expected, sizeof expected, kPadded[row], width, value);
                else
                    std::snprintf(expected, sizeof expected, kPlain[row], value);
                EXPECT_EQ(formatNumber<char>(value, NumberFormat(format), width), expected);
                EXPECT_EQ(formatNumber<char16_t>(value, NumberFormat(format), width), widened(expected));
            }
        }
    }
    EXPECT_EQ(formatNumber<char>(257, NumberFormat::LowerHex), "101");
    EXPECT_EQ(formatNumber<char>(257, NumberFormat::UpperHex, 8), "00000101");
    EXPECT_EQ(formatNumber<char>(-7, NumberFormat::SignedDecimal, 4), "-007");
    EXPECT_EQ(formatNumber<char>(-1, NumberFormat::Octal), "1777777777777777777777");
    EXPECT_EQ(formatNumber<char>(5, NumberFormat::SignedDecimal, 26), "5");
    EXPECT_EQ(formatNumber<char>(0, NumberFormat::Boolean, 9), "false");
    EXPECT_EQ(formatNumber<char16_t>(-1, NumberFormat::Boolean, 9), u"true");
}

TEST(ParseNumber, TakesWhatIsANumber) {
    const struct Case {
        const char* name;
        std::string_view text;
        std::string_view separator;
        std::uint32_t radix;
        std::uint32_t taken;
        std::uint64_t value;
        std::uint32_t radixOut;
        bool negative;
    } cases[] = {
        {"empty", "", "", 10, 0, 0, 10, false},
        {"white space before", " \t\n12 3", "", 10, 5, 12, 10, false},
        {"white space alone", "  ", "", 10, 2, 0, 10, false},
        {"lone sign", "+", "", 0, 1, 0, 0, false},
        {"prefix decides", "0x1Ag", "", 0, 4, 26, 16, false},
        {"prefix refused", "0x1A", "", 10, 0, 0, 10, false},
        {"prefix after a sign is none", "-0x1A", "", 0, 2, 0, 10, true},
        {"prefix alone", "0x", "", 0, 2, 0, 16, false},
        {"radix 0 without prefix", "019", "", 0, 3, 19, 10, false},
        {"largest radix", "zZ", "", 36, 2, 35 * 36 + 35, 36, false},
        {"colon is ten", ":@", "", 17, 2, 10 * 17 + 16, 17, false},
        {"high byte is none", "1\xB2", "", 36, 1, 1, 36, false},
        {"separators", "1,234,567", ",", 10, 9, 1234567, 10, false},
        {"doubled separator given back", "1,,234", ",", 10, 1, 1, 10, false},
        {"separator at the end", "1,", ",", 10, 2, 1, 10, false},
        {"separator first", ",1", ",", 10, 0, 0, 10, false},
        {"long separator", "1::2::::3", "::", 10, 4, 12, 10, false},
        {"largest", "18446744073709551615", "", 10, 20, ~0ull, 10, false},
        {"overflow", "-18446744073709551616", "", 10, kParseOverflow, 0, 10, false},
        {"overflow that goes unnoticed", "30000000000000000000", "", 10, 20, 11553255926290448384ull, 10,
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (const bool wide : {false, true}) {
            std::uint64_t value = 99;
            std::uint32_t radix = c.radix;
            bool negative = true;
            const std::uint32_t taken =
                wide ? parseNumber(widened(c.text), widened(c.separator), value, radix, negative)
                     : parseNumber(c.text, c.separator, value, radix, negative);
            EXPECT_EQ(std::tie(taken, value, radix, negative),
                      std::tie(c.taken, c.value, c.radixOut, c.negative));
        }
    }
}

TEST(ParseNumber, KnowsFullWidthDigits) {
    std::uint32_t value = 0;
    EXPECT_EQ(parseUInt32(u"\uFF11\uFF21\uFF46", value, 16), 3u);
    EXPECT_EQ(value, 0x1AFu);
    EXPECT_EQ(parseUInt32(u"\uFF1A\uFF20", value, 17), 2u) << "what stands between the two are digits too";
    EXPECT_EQ(value, 10u * 17 + 16);
    for (const char16_t* const behind : {u"1\uFF0F", u"1\uFF40", u"1\uFFFF"})
        EXPECT_EQ(parseUInt32(behind, value, 36), 1u);
}

TEST(ParseNumber, RefusesARadixAndChangesNothing) {
    for (const std::uint32_t bad : {1u, 37u, 0xFFFFFFFFu}) {
        std::uint64_t value = 99;
        std::uint32_t radix = bad;
        bool negative = true;
        test::expectError<std::invalid_argument>("invalid radix",
                                                 [&] { parseNumber("", "", value, radix, negative); });
        EXPECT_EQ(value, 99u);
        EXPECT_TRUE(negative);
    }
}

TEST(ParseInt32, HoldsTheRange) {
    const struct Case {
        const char* text;
        std::uint32_t radix;
        std::uint32_t taken;
        std::int32_t value;  // 77 = unchanged
        std::uint32_t unsignedTaken;
    } cases[] = {
        {"2147483648", 10, kParseOverflow, 77, 10},
        {"2147483648", 0, kParseOverflow, 77, 10},  // the radix found counts
        {"-2147483648", 10, 11, INT32_MIN, kParseOverflow},
        {"80000000", 16, 8, INT32_MIN, 8},
        {"0xffffffff", 0, 10, -1, 10},
        {"-ffffffff", 16, 9, 1, kParseOverflow},
        {"99999999999999999999", 10, kParseOverflow, 77, kParseOverflow},
        {"-0", 10, kParseOverflow, 77, kParseOverflow},
        {"x", 10, 0, 77, 0},
        {" 42 files", 10, 3, 42, 3},
        {"0x1A", 0, 4, 26, 4},
        {"0x1A", 10, 0, 77, 0},
        {"ffffffff", 16, 8, -1, 8},
        {"+", 10, 1, 0, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const std::string_view narrow = c.text;
        const std::u16string wide = widened(c.text);
        const auto parsed = [&](const auto& text, auto... radix) {
            EXPECT_EQ(parseInt32Or(text, 77, radix...), c.value);
            std::int32_t value = 77;
            EXPECT_EQ(parseInt32(text, value, radix...), c.taken);
            EXPECT_EQ(value, c.value);
            std::uint32_t bits = 77;
            EXPECT_EQ(parseUInt32(text, bits, radix...), c.unsignedTaken);
            return bits;
        };
        EXPECT_EQ(parsed(narrow, c.radix), parsed(std::u16string_view(wide), c.radix));
        if (c.radix == 10) {
            EXPECT_EQ(parsed(narrow), parsed(std::u16string_view(wide)));
        }
    }
}

TEST(IsSpace, CountsTheExtendedSpaces) {
    int plain = 0;
    int extended = 0;
    for (std::uint32_t code = 0; code <= 0x10FFFF; ++code) {
        plain += isSpace(code);
        extended += isSpace(code, true);
    }
    EXPECT_EQ(plain, 33);
    EXPECT_EQ(extended, 33 + 11 + 8);
}

}  // namespace
}  // namespace owlkit
