#include "comserver/identifiers.h"
#include "foundation/process/folders.h"
#include "testing/extension.h"
#include "tests/life_walk/answers.h"
#include "tests/life_walk/walk.h"

namespace nmshell {
namespace {

using namespace test;

struct Text {
    const char16_t* key;
    const char16_t* language;
    const char16_t* text;
};

constexpr Text kTexts[] = {
    {u"CXT_MENU_HELP", u"de", u"Hilfe"},
    {u"CXT_MENU_HELP", u"en", u"Help"},
    {u"CXT_MENU_ABOUT", u"de", u"\u00DCber"},
    {u"CXT_MENU_ABOUT", u"en", u"About\nthis"},
    {u"A key that is longer than what a short text holds", u"ja",
     u"\u4E0B\u8A18\u306E\u9805\u76EE\u3092\u6D88\u53BB"},
};

class LanguageWalk : public LifeWalkTest {
  protected:
    LanguageWalk() {
        std::filesystem::create_directory("langs");
        makeFile("langs/de.lang.txt",
                 "LANG: de\nKEY: CXT_MENU_HELP\nTEXT: Hilfe\nKEY: CXT_MENU_ABOUT\nTEXT: \xC3\x9C"
                 "ber\n");
        makeFile("langs/en.lang.txt",
                 "\xEF\xBB\xBF"
                 "LANG: en\r\nKEY: CXT_MENU_HELP\r\nTEXT: Help\r\nKEY: CXT_MENU_ABOUT\r\nTEXT: About\\nthis");
        makeFile("langs/ja.lang.txt",
                 "KEY: A key that is longer than what a short text holds\nLANG: ja\n"
                 "TEXT: "
                 "\xE4\xB8\x8B\xE8\xA8\x98\xE3\x81\xAE\xE9\xA0\x85\xE7\x9B\xAE\xE3\x82\x92\xE6\xB6\x88\xE5"
                 "\x8E\xBB\n");
        makeFile("langs/notes.txt", "KEY: x\nLANG: xx\nTEXT: not a language file\n");
        platform::registry_control::putText(u"HKEY_LOCAL_MACHINE\\" + std::u16string(kApprovalPath),
                                            kFileSystemClassId, platform::kRegSz, u"QuietOwl_NMark");
        platform::setModuleFileName(this, folder() + u"nmshell.dll");
    }

    void run() {
        owlkit::recordApplicationFolder(u"");
        {
            Module module;
            begin();
            const bool loaded = dllMain([&] { module.attach(this); });
            const bool complete = module.languageLoaded;
            const bool unloaded = dllMain([&] { module.detach(); });
            end();
            EXPECT_TRUE(unloaded);
            std::uint32_t different = complete ? activeText(module.texts) : kNotServed;
            if (!loaded)
                different = kNotLoaded;
            EXPECT_EQ(different & ~mayDiffer(), 0u) << std::hex << different;
            EXPECT_NE(module.texts.state(), owlkit::interlang::State::Loading);
            checkTexts(module.texts, complete);
        }
        EXPECT_EQ(platform::openFileCount(), 0);
        EXPECT_EQ(platform::registry_control::openHandles(), 0u);
    }

  private:
    static std::uint32_t activeText(const owlkit::interlang& texts) {
        const std::u16string text = texts.GetText(u"CXT_MENU_HELP");
        EXPECT_TRUE(text == u"Help" || text == u"Hilfe" || text == u"CXT_MENU_HELP");
        return text == u"Help" ? 0u : kOtherLanguage;
    }

    // Whatever was read is what stands there, and when all files were read it is everything.
    static void checkTexts(const owlkit::interlang& texts, bool complete) {
        std::size_t found = 0;
        for (const Text& row : kTexts) {
            std::u16string text;
            if (!texts.Find(row.language, row.key, owlkit::NotFoundMode::GiveNothing, &text))
                continue;
            ++found;
            EXPECT_EQ(text, row.text) << platform::toHostName(row.key);
        }
        if (complete) {
            EXPECT_EQ(found, std::size(kTexts));
        }
        std::vector<std::u16string> keys, languages;
        EXPECT_LE(texts.GetKeys(keys), 3u);
        EXPECT_LE(texts.GetLanguages(languages), 3u);
    }
};

TEST_F(LanguageWalk, LanguageFolder) {
    walk("language folder", [this] { run(); });
}

}  // namespace
}  // namespace nmshell
