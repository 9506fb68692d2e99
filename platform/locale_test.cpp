#include "platform/locale.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include "platform/host/locale_host.h"
#endif

namespace platform {
namespace {

TEST(LocaleContract, TextsOfTheUser) {
    EXPECT_EQ(localeInfo(kLocaleIso639LanguageName).size(), 2u);
    EXPECT_EQ(localeInfo(kLocaleIso3166CountryName).size(), 2u);
    EXPECT_EQ(localeInfo(kLocaleAbbreviatedLanguageName).size(), 3u);
    for (const std::uint32_t type : {kLocaleListSeparator, kLocaleDecimalSeparator, kLocaleThousandSeparator,
                                     kLocaleShortDate, kLocaleLongDate, kLocaleShortTime, kLocaleLongTime}) {
        SCOPED_TRACE(type);
        const std::u16string text = localeInfo(type);
        EXPECT_FALSE(text.empty());
        EXPECT_NE(text.back(), u'\0');
    }
    EXPECT_EQ(localeInfo(0xFFFF), u"");
}

// In the code page 1252, where Wine has it, and in the host's substitute for it.
TEST(LocaleContract, ConvertsInTheCodePage) {
#ifndef _WIN32
    host::setAnsiCodePage(1252);
#endif
    if (ansiCodePage() != 1252u)
        GTEST_SKIP() << "the ANSI code page is another one";
    const struct Case {
        const char* name;
        std::u16string wide;
        std::uint32_t flags;
        const char* narrow;
        bool usedDefault;
    } cases[] = {
        {"nothing", u"", 0, "", false},
        {"ASCII", u"a~", kWideNoBestFitCharacters, "a~", false},
        {"a letter of it", u"\u00E9", kWideNoBestFitCharacters, "\xE9", false},
        {"a letter of another", u"a\u4E2D", kWideNoBestFitCharacters, "a?", true},
        {"one that an A would fit best", u"\u0100", kWideNoBestFitCharacters, "?", true},
        {"a lone surrogate", u"\xD800z", kWideNoBestFitCharacters, "?z", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        bool usedDefault = !c.usedDefault;
        EXPECT_EQ(wideToMultiByte(c.wide, c.flags, &usedDefault), c.narrow);
        EXPECT_EQ(usedDefault, c.usedDefault);
        EXPECT_EQ(wideToMultiByte(c.wide, c.flags, nullptr), c.narrow);
        if (!c.usedDefault) {
            EXPECT_EQ(multiByteToWide(c.narrow, kMultiByteErrorInvalidCharacters), c.wide);
        }
    }
#ifndef _WIN32
    host::resetLocale();
#endif
}

}  // namespace
}  // namespace platform
