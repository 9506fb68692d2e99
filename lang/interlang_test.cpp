#include "lang/interlang.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <stdexcept>

#include "foundation/stream/memory_stream.h"
#include "testing/errors.h"

namespace owlkit {
namespace {

using test::errorOf;

// Adds a text for each {key, language}: the two joined. Sets the languages unless `active` is null.
void load(interlang& table, std::initializer_list<std::pair<const char16_t*, const char16_t*>> entries,
          const char16_t* active = u"en", const char16_t* primary = u"en") {
    table.BeginLoad();
    for (const auto& [key, language] : entries) {
        table.SetKey(key);
        table.SetLanguage(language);
        table.AddText(std::u16string(key) + language);
    }
    if (active != nullptr)
        table.SetLanguages(active, primary);
    table.EndLoad();
}

TEST(Interlang, EveryOperationKeepsItsState) {
    interlang table;
    MemoryStream stream;
    std::uint32_t line = 0;
    std::u16string text;
    std::vector<std::u16string> list;
    const std::function<void()> addText = [&] { table.AddText(u"t"); };
    const std::function<void()> loading[] = {
        [&] { table.Clear(); },
        [&] { table.SetLanguages(u"a", u"b"); },
        [&] { table.SetKey(u"k"); },
        [&] { table.SetLanguage(u"en"); },
        [&] { table.EndLoad(); },
        [&] { table.Parse(stream, line); },
        addText,
    };
    const std::function<void()> built[] = {
        [&] { EXPECT_FALSE(table.Write(stream)); },
        [&] { EXPECT_FALSE(table.HasLanguage(u"en")); },
        [&] { EXPECT_FALSE(table.HasText(u"k")); },
        [&] { EXPECT_EQ(table.GetLanguages(list), 0u); },
        [&] { EXPECT_EQ(table.GetKeys(list), 0u); },
        [&] { EXPECT_FALSE(table.Find(u"en", u"k", NotFoundMode::Throw, &text)); },
        [&] { EXPECT_EQ(table.GetTextWithArgs(u"k%1", u"a"), u"ka"); },
        [&] { EXPECT_TRUE(table.CheckConsistency(text, 0)); },
        [&] { table.BeginLoad(); },
    };
    const auto expectEach = [](const auto& calls, const char* error, const char* state) {
        for (const auto& call : calls)
            EXPECT_EQ(errorOf(call), error) << state << ' ' << &call - calls;
    };
    expectEach(loading, "invalid state", "empty");
    expectEach(built, "", "empty");
    expectEach(built, "invalid state", "loading");
    table.SetKey(u"k");
    table.SetLanguage(u" \t");
    EXPECT_EQ(errorOf(addText), "invalid state") << "no language";
    table.SetKey(u"");
    table.SetLanguage(u"en");
    EXPECT_EQ(errorOf(addText), "invalid state") << "no key";
    table.EndLoad();
    expectEach(loading, "invalid state", "built");
    EXPECT_FALSE(table.Write(stream)) << "built, without languages";
}

TEST(Interlang, FindAndItsModes) {
    interlang table;
    load(table, {{u"both", u" en\n"}, {u"both", u"de"}, {u"EN%2%1", u"en"}});
    const struct Case {
        const char* name;
        const char16_t *language, *key;
        NotFoundMode mode;
        bool found;
        const char16_t* text;
    } cases[] = {
        {"its own language first", u"de", u"both", NotFoundMode::UsePrimary, true, u"bothde"},
        {"the primary language", u"de", u"EN%2%1", NotFoundMode::UsePrimary, true, u"EN%2%1en"},
        {"not in mode 1", u"de", u"EN%2%1", NotFoundMode::GiveKey, false, u"EN%2%1"},
        {"letter case of the key", u"en", u"BOTH", NotFoundMode::UsePrimary, false, u"BOTH"},
        {"letter case of the language", u"EN", u"both", NotFoundMode::GiveNothing, false, u""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::u16string text = u"before";
        EXPECT_EQ(table.Find(c.language, c.key, c.mode, &text), c.found);
        EXPECT_EQ(text, c.text);
    }
    EXPECT_EQ(errorOf([&] { table.Find(u"de", u"EN%2%1", NotFoundMode::Throw); }),
              "interlang translation not found for key 'EN%2%1'");
    EXPECT_FALSE(table.HasText(u"EN%2%1", u"de"));
    EXPECT_EQ(table.GetTextWithArgs(u"EN%2%1", u"%2%1", u"b"), u"ENbb%1en");
    table.BeginLoad();
    table.Clear();
    table.EndLoad();
    load(table, {{u"both", u"en"}}, nullptr);
    EXPECT_EQ(table.GetText(u"both", u"de"), u"both") << "what was set is removed too";
}

TEST(Interlang, ActiveLanguageIsSettledAtTheEnd) {
    const struct Case {
        const char* name;
        const char16_t *active, *primary, *text, *missing;
    } cases[] = {
        {"as asked for", u" de ", u"en", u"kde", u"onlyen"},
        {"the primary one", u"xx", u" en", u"ken", u"onlyen"},
        {"the first one read", u"xx", u"yy", u"kfr", u"only"},
        {"a key missing without primary language", u"de", u"", u"kde", u"only"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        interlang table;
        load(table, {{u"k", u"fr"}, {u"k", u"en"}, {u"k", u"de"}, {u"only", u"en"}}, c.active, c.primary);
        EXPECT_EQ(table.GetText(u"k"), c.text);
        EXPECT_EQ(table.GetText(u"only"), c.missing);
        load(table, {{u"k", u"xx"}}, nullptr);
        EXPECT_EQ(table.GetText(u"k"), c.text)
            << "a language that comes later does not become active by itself";
    }
}

// Setting languages again, and leaving it where the table says that it uses them already, answer alike after
// any steps; and it does say so: what was just set is in use.
TEST(Interlang, LanguagesInUseNeedNotBeSetAgain) {
    const char16_t* const kNames[] = {u"en", u"de", u" fr ", u"fr", u"xx", u""};
    std::mt19937 random(1);
    int kept = 0;
    for (int round = 0; round < 200; ++round) {
        interlang again, sparing;
        for (int step = 0; step < 8; ++step) {
            SCOPED_TRACE(testing::Message() << round << ' ' << step);
            const char16_t* const active = kNames[random() % std::size(kNames)];
            const char16_t* const primary = kNames[random() % std::size(kNames)];
            const bool brings = random() % 3 == 0 && *active != u'\0';
            for (interlang* const table : {&again, &sparing}) {
                if (brings)
                    load(*table, {{u"k", active}, {*primary != u'\0' ? primary : u"k", active}}, nullptr);
                else if (table == &sparing && table->usesLanguages(active, primary))
                    ++kept;
                else
                    load(*table, {}, active, primary);
            }
            EXPECT_TRUE(brings || sparing.usesLanguages(active, primary));
            EXPECT_EQ(sparing.state(), again.state());
            for (const std::u16string_view key : {u"k", u"en", u"de", u" fr ", u"fr", u"xx"})
                EXPECT_EQ(sparing.GetText(key), again.GetText(key));
        }
    }
    EXPECT_GT(kept, 20);
    interlang loading;
    loading.BeginLoad();
    EXPECT_FALSE(loading.usesLanguages(u"", u""));
}

// A row each: what the narrow forms add is the conversion.
TEST(Interlang, NarrowForms) {
    interlang table;
    table.BeginLoad();
    table.SetKey("\xC3\xA9", kCharsetUtf8);
    table.SetLanguage("\xE9 ");
    table.AddText("%1\xE4", kCharsetLatin1);
    table.SetKey("k");
    table.SetLanguage("en");
    table.AddText("t");
    table.SetLanguages("\xE9", "en");
    table.EndLoad();
    EXPECT_EQ(table.GetText(u"\u00E9", u"\u00E9"), u"%1\u00E4");
    EXPECT_EQ(table.GetTextWithArgs("\xE9", "a", {}, "\xE9", kCharsetLatin1), "a\xE4");
    EXPECT_EQ(table.GetText("\xC3\xA9", "\xE9", kCharsetUtf8), "%1\xC3\xA4");
    EXPECT_TRUE(table.HasText("\xE9", "\xE9", kCharsetLatin1));
    EXPECT_FALSE(table.HasText("\xE9", "en", kCharsetLatin1));
    EXPECT_TRUE(table.HasLanguage("\xE9"));
    EXPECT_FALSE(table.HasLanguage("\xC3\xA9"));
    std::string text;
    EXPECT_TRUE(table.Find("\xE9", "\xC3\xA9", NotFoundMode::GiveNothing, &text, kCharsetUtf8));
    EXPECT_EQ(text, "%1\xC3\xA4");
    std::vector<std::string> names, keys;
    EXPECT_EQ(table.GetLanguages(names), 2u);
    EXPECT_EQ(names, (std::vector<std::string>{"\xE9", "en"}));
    EXPECT_EQ(table.GetKeys(keys), 2u);
    EXPECT_EQ(keys.front(), "k");
    EXPECT_FALSE(table.CheckConsistency(text, 1));
    EXPECT_TRUE(text.ends_with("report truncated.")) << text;
}

}  // namespace
}  // namespace owlkit
