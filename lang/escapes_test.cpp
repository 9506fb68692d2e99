#include "lang/escapes.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "foundation/codec/hex.h"

namespace owlkit {
namespace {

constexpr std::size_t npos = std::u16string_view::npos;

std::u16string decoded(std::u16string text) {
    decodeEscapes(text);
    return text;
}

TEST(Escapes, Decode) {
    const struct Case {
        const char* name;
        std::u16string text, expected;
    } cases[] = {
        {"letters", uR"(\0\a\b\t\n\v\f\r)", {0, 7, 8, 9, 10, 11, 12, 13}},
        {"exactly two and four digits of both cases", uR"(\x4Aa\x4a1\u00410\u20aC)", u"JaJ1A0\u20AC"},
        {"too few digits, then escapes", uR"(\x4\n\x\t\u041\xg0\x4g)", u"\\x4\n\\x\t\\u041\\xg0\\x4g"},
        {"too few digits at the end", uR"(\u004)", uR"(\u004)"},
        {"no escapes", uR"(\q\N\X41\ \")", uR"(\q\N\X41\ \")"},
        {"runs and what stands behind them", uR"(\\n\n \\\x41 \\\\t\\)", u"\\\\n\n \\\\\\x41 \\\\\\\\t\\\\"},
        {"what was decoded starts nothing", uR"(\x5cn\x5c\n)", u"\\n\\\n"},
        {"a backslash at the end", uR"(\n\)", u"\n\\"},
        {"a line break and a space", uR"(Wipe\n\x20now)", u"Wipe\n now"},
        {"an escape and none", uR"(\u20AC\q)", u"\u20AC\\q"},
        {"a doubled backslash", uR"(C:\\new)", u"C:\\\\new"},
        {"one digit", uR"(\x4)", u"\\x4"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(decoded(c.text), c.expected);
    }
}

TEST(Escapes, Encode) {
    EXPECT_EQ(encodeEscapes(u"  a  \n "), uR"(\x20\x20a  \n\x20)");
    EXPECT_EQ(encodeEscapes(u"  "), uR"(\x20\x20)");
    EXPECT_EQ(encodeEscapes(u" \n\x7F\x80\u00FF\u0100\uABCD ", EscapeMode::Ascii),
              u" \\x0A\x7F\\x80\\xFF\\u0100\\uABCD ");
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const auto c = static_cast<char16_t>(unit);
        const std::u16string text{c, c, u'4', c, u'1', c};
        ASSERT_EQ(decoded(encodeEscapes(text)), text);
        ASSERT_EQ(decoded(hexEscapeText(text, false)), text);
        const std::u16string ascii = encodeEscapes(text, EscapeMode::Ascii);
        ASSERT_EQ(decoded(ascii), text);
        const auto [lowest, highest] = std::ranges::minmax(ascii);
        ASSERT_GE(lowest, u' ');
        ASSERT_LE(highest, 127);
        ASSERT_EQ(findBrokenEscape(ascii), c == u'\\' ? 0 : npos);
    }
}

TEST(Escapes, FindBroken) {
    const struct Case {
        const char16_t* text;
        std::size_t place;
    } cases[] = {
        {u"", npos},      {u"\\n\\x5C\\u20acx\\0", npos},
        {u"a\\d", 1},     {u"\\n\\", 2},
        {u"\\n\\\\n", 2}, {u"\\x2", 0},
        {u"\\u20G0", 0},  {u"\\x5C\\N", 4},
    };
    for (const Case& c : cases)
        EXPECT_EQ(findBrokenEscape(c.text), c.place);
}

}  // namespace
}  // namespace owlkit
