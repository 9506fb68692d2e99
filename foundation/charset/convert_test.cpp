#include "foundation/charset/convert.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "foundation/charset/single_byte_tables.h"
#include "testing/errors.h"

namespace owlkit {
namespace {

using enum ErrorPolicy;
using test::expectError;
using namespace std::string_literals;

TEST(Charset, NamesFitTheCodePages) {
    int known = 0;
    for (std::uint32_t codePage = 0; codePage <= 0x12000; ++codePage) {
        const std::string_view name = CharsetName(CharsetFromCodePage(codePage));
        known += name != "SYSTEM";
        if (name.starts_with("WINDOWS-")) {
            EXPECT_EQ(name.substr(8), std::to_string(codePage));
        } else if (name.starts_with("ISO-8859-") && codePage != 874) {
            EXPECT_EQ(name.substr(9), std::to_string(codePage - 28590));
        }
    }
    EXPECT_EQ(known, 21);
    EXPECT_EQ(CharsetName(kCharsetIso8859_16), "ISO-8859-16");
    EXPECT_EQ(CharsetName(kCharsetCount), "");
}

TEST(ToWide, DecodesUtf8) {
    const struct Case {
        const char* name;
        std::string text;
        std::u16string expected;  // with '?' for each failure
    } cases[] = {
        {"empty", "", u""},
        {"zero is a character", std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
        {"two bytes", "\xC3\xA9", u"\u00E9"},
        {"overlong two", "\xC0\x80\xC1\xBF", u"????"},
        {"three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", u"\u0800\uFFFF"},
        {"overlong three", "\xE0\x9F\xBF", u"???"},
        {"lone surrogates", "\xED\xA0\x80\xED\xBF\xBF", {0xD800, 0xDFFF}},
        {"four bytes", "\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF", {0xD83D, 0xDE00, 0xDBFF, 0xDFFF}},
        {"overlong four", "\xF0\x8F\xBF\xBF", u"????"},
        {"least of four", "\xF0\x90\x80\x80", {0xD800, 0xDC00}},
        {"too large", "\xF4\x90\x80\x80", u"????"},
        {"leads above F4", "\xF5\x80\x80\x80\xF8\x88\x80\x80\x80\xFE", u"??????????"},
        {"cut short", "a\xF0\x9F\x98", u"a???"},
        {"broken off by a character", "\xE2\x82z\xE2\x82\xAC", u"??z\u20AC"},
        {"stray continuation", "\x80z\xBF", u"?z?"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        bool failed = true;
        EXPECT_EQ(ToWide(c.text, kCharsetUtf8, Replace, u'?', &failed), c.expected);
        EXPECT_EQ(failed, c.expected.find(u'?') != c.expected.npos);
    }
}

TEST(Convert, SingleByteDirectionsAreInverse) {
    for (CharsetCode charset = kCharsetAscii; charset < kCharsetCount; ++charset) {
        const SingleByteTable table(charset);
        int defined = 0;
        for (unsigned byte = 0; byte < 256; ++byte) {
            const char16_t unit = table.decode(static_cast<std::uint8_t>(byte));
            defined += unit != 0;
            EXPECT_TRUE(unit == 0 || table.encode(unit) == byte) << charset << ' ' << byte;
        }
        int encoded = 0;
        for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
            encoded += table.encode(static_cast<char16_t>(unit)) != 0;
        EXPECT_EQ(encoded, defined) << charset;
    }
}

TEST(Convert, FollowsThePolicyToWide) {
    const struct Case {
        CharsetCode charset;
        ErrorPolicy policy;
        char16_t replacement;
        std::u16string expected;
    } cases[] = {
        {kCharsetAscii, Replace, u'\u20AC', u"a\u20AC\u20ACz"},
        {kCharsetUtf8, Replace, 0, u"az"},
        {kCharsetAscii, Stop, u'?', u"a"},
        {kCharsetAscii, Empty, u'?', u""},
        {kCharsetUtf8, Fixed, u'?', u"a\uFFFD\uFFFDz"},
        {kCharsetUtf8, Hex, u'?', u"ax81xFFz"},
        {kCharsetAscii, KeepByte, u'?', {u'a', 0xDC81, 0xDCFF, u'z'}},
        {kCharsetUtf8, Latin1, u'?', u"a\u0081\u00FFz"},
        {kCharsetWindows1252, Latin1, u'?', u"a\u00FFz"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.charset << " policy " << static_cast<int>(c.policy));
        bool failed = false;
        EXPECT_EQ(ToWide("a\x81\xFFz", c.charset, c.policy, c.replacement, &failed), c.expected);
        EXPECT_TRUE(failed);
    }
    EXPECT_EQ(ToWide(std::string_view("a\0b", 3), kCharsetLatin1, Hex), u"ax00b");
}

TEST(Convert, FollowsThePolicyToNarrow) {
    // About the bytes that ToWide keeps: 0xDC00 and the byte in a single-byte charset.
    const std::u16string text = {u'a',   0x20AC, 0xD83D, 0xDE00, 0xDBFF, 0xDC00 + 1,
                                 0xDBFF, u'\0',  0xDCFF, 0xDD00, u'z'};
    const std::u16string kept = {u'a', 0xDBFF, u'a', 0xDC00, 0xDC41, 0xDC7F, 0xDC80, 0xDCFF, 0xDD00, u'z'};
    const std::string expected[] = {
        "a\xBF\xBF\xBF\xBF\xBF\xBF\xBFz",
        "a",
        "",
        "a\x1A\x1A\x1A\x1A\x1A\x1A\x1Az",
        "ax20ACx01F600x10FC01xDBFFx0000xDCFFxDD00z",
        "a\xFFz",
        "az",
    };
    bool failed = false;
    for (int policy = 0; policy <= 6; ++policy) {
        EXPECT_EQ(ToNarrow(text, kCharsetLatin1, ErrorPolicy(policy), '\xBF', &failed), expected[policy]);
        EXPECT_TRUE(failed);
    }
    EXPECT_EQ(ToNarrow(text, kCharsetLatin1, Replace, 0), "az");
    EXPECT_EQ(ToNarrow(kept, kCharsetLatin1, KeepByte), "aa\0A\x7F\x80\xFFz"s);
    // UTF-8 keeps only what is no character of it; what is left are lone surrogates.
    EXPECT_EQ(ToNarrow(kept, kCharsetUtf8, KeepByte, '?', &failed),
              "a\xED\xAF\xBF"
              "a\xED\xB0\x80\xED\xB1\x81\xED\xB1\xBF\x80\xFF\xED\xB4\x80z");
    EXPECT_TRUE(failed);
    EXPECT_EQ(ToWide("\x80\xC3\xFF", kCharsetUtf8, KeepByte), (std::u16string{0xDC80, 0xDCC3, 0xDCFF}));
}

TEST(Convert, ThrowsItsErrors) {
    for (const CharsetCode charset : {22u, 26845u, 26847u, 0xFFFFFFFFu}) {
        expectError<std::invalid_argument>("invalid conversion", [&] { ToWide("", charset); });
        expectError<std::invalid_argument>("invalid conversion", [&] { ToNarrow(u"", charset); });
    }
    // A length that no result can have is refused before the text is touched.
    const std::u16string_view endless(u"a", std::size_t{1} << 62);
    expectError<std::length_error>("string too long", [&] { ToNarrow(endless, kCharsetUtf8); });
}

}  // namespace
}  // namespace owlkit
