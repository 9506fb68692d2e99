#include <stdexcept>

#include "foundation/charset/convert.h"
#include "foundation/charset/locale_info.h"
#include "platform/locale.h"
#include "testing/host.h"

namespace owlkit {
namespace {

using enum ErrorPolicy;
using namespace test;
using SystemCharset = HostTest;

// A code page that has no charset; its stand-in knows ISO-8859-1 without 0x80 to 0x9F.
constexpr std::uint32_t kUnknownCodePage = 1257;

TEST_F(SystemCharset, IsResolvedAtUse) {
    EXPECT_EQ(ToWide("\xC3\xA9", kCharsetSystem), u"\u00E9");
    host::setAnsiCodePage(874);
    EXPECT_EQ(systemCharset(), kCharsetIso8859_15);
    EXPECT_EQ(ToNarrow(u"\u20AC", kCharsetSystem), "\xA4");
    host::setAnsiCodePage(std::nullopt);
    EXPECT_EQ(systemCharset(), kCharsetAscii);
    EXPECT_EQ(ToWide("a\xE9", kCharsetSystem), u"a?");
    host::setAnsiCodePage(kUnknownCodePage);
    EXPECT_EQ(systemCharset(), kCharsetSystem);
    EXPECT_EQ(ToWide("a\xE9", kCharsetSystem), u"a\u00E9");
}

TEST_F(SystemCharset, ThePlatformConvertsToWide) {
    const struct Case {
        std::uint32_t codePage;
        std::string text;
        std::u16string expected;
        bool failed;
    } cases[] = {
        {kUnknownCodePage, std::string("a\0\xE9", 3), {u'a', 0, 0xE9}, false},
        {kUnknownCodePage, "a\x80", u"a\uFFFD", true},
        {65001, "\xC3\xA9\xF0\x9F\x98\x80", u"\u00E9\U0001F600", false},
        {65001, "a\xED\xA0\x80", u"a\uFFFD", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        host::setAnsiCodePage(c.codePage);
        for (const ErrorPolicy policy : {Replace, Stop, Empty, Hex}) {
            bool failed = !c.failed;
            EXPECT_EQ(ToWide(c.text, kCharsetPlatform, policy, u'?', &failed),
                      c.failed && policy == Empty ? u"" : c.expected);
            EXPECT_EQ(failed, c.failed);
        }
    }
}

TEST_F(SystemCharset, ThePlatformConvertsToNarrow) {
    const std::u16string text = {u'a', 0, 0xD83D, 0xDE00, 0xDC41, u'z'};
    struct Case {
        std::uint32_t codePage;
        ErrorPolicy policy;
        char replacement;
        std::string expected;
    };
    const std::string a("a\0", 2);
    const std::string smile = a + "\xF0\x9F\x98\x80";
    const Case cases[] = {
        {kUnknownCodePage, Replace, '!', a + "!!z"},
        {kUnknownCodePage, Replace, 0, a + "z"},
        {kUnknownCodePage, Stop, '!', a},
        {kUnknownCodePage, Empty, '!', ""},
        {kUnknownCodePage, Fixed, '!', a + "\x1A\x1Az"},
        {kUnknownCodePage, Hex, '!', a + "xFFFDxFFFDz"},
        {kUnknownCodePage, KeepByte, '!', a + "Az"},
        {54936, Replace, '!', a + "!!z"},
        {65001, Replace, '!', smile + "!z"},
        {65001, Stop, '!', smile},
        {65001, Hex, '!', smile + "xFFFDz"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.codePage << " policy " << static_cast<int>(c.policy));
        host::setAnsiCodePage(c.codePage);
        bool failed = false;
        EXPECT_EQ(ToNarrow(text, kCharsetPlatform, c.policy, c.replacement, &failed), c.expected);
        EXPECT_TRUE(failed);
        EXPECT_EQ(ToNarrow(u"ab", kCharsetPlatform, c.policy, c.replacement, &failed), "ab");
        EXPECT_FALSE(failed);
    }
}

TEST_F(SystemCharset, AFailingPlatformIsReported) {
    constexpr platform::Status kError = platform::kErrorInvalidParameter;
    for (const std::uint32_t call : {1u, 2u}) {  // for the length and for the text
        SCOPED_TRACE(call);
        bool failed = false;
        fault::arm("MultiByteToWideChar", call, kError, true);
        EXPECT_EQ(ToWide("ab", kCharsetPlatform, Replace, u'?', &failed), u"");
        EXPECT_TRUE(failed);
        failed = false;
        fault::arm("WideCharToMultiByte", call, kError, true);
        EXPECT_EQ(ToNarrow(u"ab", kCharsetPlatform, Replace, '?', &failed), "??");
        EXPECT_TRUE(failed);
        fault::arm("GetLocaleInfoW", call, kError, true);
        EXPECT_EQ(platform::localeInfo(platform::kLocaleShortDate), u"");
    }
    fault::arm("GetCPInfoExW", 1, kError);
    EXPECT_EQ(systemCharset(), kCharsetAscii);
}

TEST_F(SystemCharset, LocaleTextsFollowTheCharset) {
    host::setLocaleInfo(platform::kLocaleThousandSeparator, u"\u00A0");
    host::setLocaleInfo(platform::kLocaleListSeparator, u"\u20AC\u4E2D");
    LocaleInfo locale;
    EXPECT_EQ(locale.charset(), kCharsetUtf8);
    EXPECT_EQ(locale.narrow(LocaleText::ThousandSeparator), "\xC2\xA0");
    locale.SetCharset(kCharsetWindows1252);
    EXPECT_EQ(locale.narrow(LocaleText::ThousandSeparator), "\xA0");
    EXPECT_EQ(locale.narrow(LocaleText::ListSeparator), "\x80?");
    EXPECT_EQ(locale.narrow(LocaleText::LongTimeFormat), "h:mm:ss tt");
    host::setAnsiCodePage(850);
    locale.SetCharset(kCharsetSystem);
    EXPECT_EQ(locale.charset(), kCharsetDos850);
    EXPECT_EQ(locale.narrow(LocaleText::ThousandSeparator), "\xFF");
    host::setAnsiCodePage(kUnknownCodePage);
    for (const CharsetCode bad : {kCharsetSystem, 22u, kCharsetPlatform})
        EXPECT_THROW(locale.SetCharset(bad), std::invalid_argument);
    EXPECT_EQ(locale.narrow(LocaleText::ThousandSeparator), "\xFF");
    EXPECT_EQ(LocaleInfo().narrow(LocaleText::ThousandSeparator), "\xA0");
}

}  // namespace
}  // namespace owlkit
