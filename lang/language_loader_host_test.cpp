#include "lang/language_loader.h"

#include <fstream>
#include <set>

#include "foundation/stream/file_stream.h"
#include "lang/read_observer.h"
#include "platform/file.h"
#include "platform/locale.h"
#include "testing/host.h"
#include "testing/text.h"

namespace owlkit {
namespace {

using namespace test;
namespace fs = std::filesystem;

class LanguageLoader : public HostTest {
  protected:
    static std::u16string failure(const std::u16string& line, const std::u16string& path) {
        return u"Language File Error\nThere is a syntax error at line " + line +
               u" in the following file.\n" + path;
    }

    const std::u16string file_ = folder() + u"a.lang.txt";
    interlang table_;
};

TEST_F(LanguageLoader, FoldersWithAndWithoutFiles) {
    const std::u16string here = fs::current_path().u16string();
    for (const char* name : {".lang.txt", "a.LANG.TXT", "a.lang.txt.bak"})
        makeFile(name, "KEY: a");
    fs::create_directory("b.lang.txt");
    for (const std::u16string& folder : {here, here + u"/none"})
        EXPECT_EQ(LoadLanguageFolder(folder, table_),
                  u"Languange File Error\nFailed to load language files.");
    EXPECT_EQ(table_.state(), interlang::State::Empty);

    makeFile("a.lang.txt", "LANG: en\nKEY: a\nTEXT: 1\nLANG: en\nx");
    makeFile("d.lang.txt", "LANG: en\nKEY: d\nTEXT: 2");
    makeFile("c.lang.txt", "LANG: en\nKEY: c\nTEXT: 3\n\nKEY: d\nKEY: e");
    std::vector<std::u16string> names;
    ASSERT_TRUE(ListLanguageFiles(here, names));
    std::erase(names, u"d.lang.txt");
    ASSERT_EQ(names.size(), 2u);
    const std::u16string expected = failure(names[0][0] == u'a' ? u"5" : u"6", folder() + names[0]);
    EXPECT_EQ(LoadLanguageFolder(here, table_), expected);
    EXPECT_EQ(LoadLanguageFolder(folder(), table_), expected) << "with a separator at the end";
    EXPECT_EQ(table_.GetText(u"a") + table_.GetText(u"d") + table_.GetText(u"c"), u"123");
    makeFile("a.lang.txt", "");
    makeFile("c.lang.txt", "KEY: x");
    EXPECT_EQ(LoadLanguageFolder(here, table_), u"");
}

TEST_F(LanguageLoader, EveryPlatformFailureIsTold) {
    makeFile("a.lang.txt", "LANG: en\nKEY: a\nTEXT: " + std::string(300000, 't'));
    EXPECT_EQ(LoadLanguageFile(u"none", table_), failure(u"-1", u"none"));
    int failures = 0;
    walkFaults("*", platform::kErrorAccessDenied, [&] {
        interlang table;
        const std::u16string text = LoadLanguageFile(file_, table);
        EXPECT_EQ(table.state(), interlang::State::Built);
        EXPECT_EQ(text, table.HasText(u"a") ? u"" : failure(u"-1", file_));
        EXPECT_EQ(table.GetText(u"a").size(), text.empty() ? 300000u : 1u) << "all of it or none";
        failures += !text.empty();
    });
    EXPECT_GT(failures, 0);
    fault::resetCounts();
    EXPECT_EQ(LoadLanguageFile(file_, table_), u"");
    EXPECT_LE(fault::calls("ReadFile"), 6u) << "large pieces";
    EXPECT_EQ(host::lastCreateFile().share, platform::kFileShareRead | platform::kFileShareWrite);
    EXPECT_EQ(host::lastCreateFile().access, platform::kGenericRead);
}

// A file that can be read no further, or written no further, or that is too large to be read at all.
TEST_F(LanguageLoader, FilesThatCannotBeReadOrWrittenToTheEnd) {
    struct Bound final : ReadObserver {
        void line(std::uint32_t, LineKind, std::u16string_view) override {
            if (++lines > 40000)
                throw std::runtime_error("more lines than the file has");
        }
        void stored(const StoredText&) override {}
        void failed(SyntaxRule) override {}
        int lines = 0;
    };
    makeFile("a.lang.txt", std::string(40000, '\n'));
    FileStream file;
    const auto parse = [&] {
        Bound bound;
        std::uint32_t line = 0;
        ASSERT_TRUE(file.seek(0, SeekOrigin::Start));
        table_.BeginLoad();
        const bool read = table_.Parse(file, line, &bound);
        table_.EndLoad();
        EXPECT_NE(read, fault::fired());
    };
    ASSERT_TRUE(file.open(file_, OpenMode::Read));
    walkFaults("ReadFile", platform::kErrorAccessDenied, parse, true);
    file.close();

    makeFile("a.lang.txt", "LANG: en\nKEY: a\nTEXT: 1");
    ASSERT_EQ(LoadLanguageFile(file_, table_), u"");
    FileStream out;
    ASSERT_TRUE(out.open(folder() + u"out", OpenMode::CreateWrite));
    failEach({"WriteFile", "WriteFile, short"}, platform::kErrorDiskFull,
             [&] { EXPECT_FALSE(table_.Write(out)); });

    fs::resize_file("a.lang.txt", 0x80000000);  // a hole, no disk space
    EXPECT_EQ(LoadLanguageFile(file_, table_), failure(u"-1", file_));
}

TEST_F(LanguageLoader, SystemLanguage) {
    makeFile("a.lang.txt", "KEY: k\nLANG: en\nTEXT: E\nLANG: de\nTEXT: D\nLANG: DEU\nTEXT: A");
    EXPECT_EQ(LoadLanguageFolder(folder(), table_), u"");
    host::setLocaleInfo(platform::kLocaleAbbreviatedLanguageName, u"DEU");
    for (const auto& [iso, text] : {std::pair{u"de", u"D"}, {u"", u"A"}, {u"xx", u"E"}}) {
        host::setLocaleInfo(platform::kLocaleIso639LanguageName, iso);
        table_.BeginLoad();
        table_.SetLanguages(u" ", u"en");
        table_.EndLoad();
        EXPECT_EQ(table_.GetText(u"k"), text);
    }
}

std::set<std::u16string> fileNames(const char* folder) {
    std::vector<std::u16string> names;
    EXPECT_TRUE(ListLanguageFiles(fs::path(folder).u16string(), names));
    return {names.begin(), names.end()};
}

TEST_F(LanguageLoader, ShippedFilesAreCompleteAndInTheWritersLayout) {
    EXPECT_EQ(fileNames(SHIPPED_LANGUAGES), fileNames(LANGUAGES));
    EXPECT_EQ(*fileNames(LANGUAGES).begin(), u"00-en.lang.txt") << "decides for everybody without a file";
    EXPECT_EQ(LoadLanguageFolder(fs::path(SHIPPED_LANGUAGES).u16string(), table_), u"");
    std::u16string report;
    EXPECT_TRUE(table_.CheckConsistency(report, 0)) << fs::path(report).string();
    // English has notes for translators above its keys.
    for (const auto& [file, name, reference] :
         {std::tuple{"00-en", "en", ""}, {"de", "de", "en"}, {"zh-Hant", "zh-Hant", "en"}}) {
        std::ifstream lines(fs::path(SHIPPED_LANGUAGES) / (std::string(file) + ".lang.txt"));
        std::string text;
        for (std::string line; std::getline(lines, line);)
            text += *reference == 0 && line.starts_with("# ") ? "" : line + '\n';
        MemoryStream out;
        ASSERT_TRUE(table_.Write(out, name, reference));
        EXPECT_TRUE(text.ends_with(bytesOf(out))) << name;
    }
}

}  // namespace
}  // namespace owlkit
