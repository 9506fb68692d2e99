#include "lang/language_loader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "foundation/stream/file_stream.h"
#include "foundation/stream/memory_stream.h"
#include "lang/read_observer.h"
#include "platform/file.h"
#include "platform/host/fault.h"
#include "platform/host/file_host.h"
#include "platform/host/locale_host.h"
#include "platform/locale.h"
#include "testing/temporary.h"

namespace owlkit {
namespace {

namespace fs = std::filesystem;
namespace fault = platform::fault;

class LanguageLoader : public testing::Test {
  protected:
    ~LanguageLoader() override {
        fault::disarm();
        platform::host::resetLocale();
    }
    void put(const std::string& name, const std::string& text) const { folder_.write(name, text); }
    std::u16string path(const std::u16string& name) const { return (folder_ / name).u16string(); }
    static std::u16string failure(const std::u16string& line, const std::u16string& path) {
        return u"Language File Error\nThere is a syntax error at line " + line +
               u" in the following file.\n" + path;
    }

    const test::TemporaryFolder folder_;
    interlang table_;
};

TEST_F(LanguageLoader, FoldersWithAndWithoutFiles) {
    for (const char* name : {".lang.txt", "a.LANG.TXT", "a.lang.txt.bak"})
        put(name, "KEY: a");
    fs::create_directory(folder_ / "b.lang.txt");
    for (const std::u16string& folder : {folder_.path().u16string(), path(u"none")})
        EXPECT_EQ(LoadLanguageFolder(folder, table_),
                  u"Languange File Error\nFailed to load language files.");
    EXPECT_EQ(table_.state(), interlang::State::Empty);

    put("a.lang.txt", "LANG: en\nKEY: a\nTEXT: 1\nLANG: en\nx");
    put("d.lang.txt", "LANG: en\nKEY: d\nTEXT: 2");
    put("c.lang.txt", "LANG: en\nKEY: c\nTEXT: 3\n\nKEY: d\nKEY: e");
    std::vector<std::u16string> names;
    ASSERT_TRUE(ListLanguageFiles(folder_.path().u16string(), names));
    std::erase(names, u"d.lang.txt");
    ASSERT_EQ(names.size(), 2u);
    const std::u16string expected = failure(names[0][0] == u'a' ? u"5" : u"6", path(names[0]));
    EXPECT_EQ(LoadLanguageFolder(folder_.path().u16string(), table_), expected);
    EXPECT_EQ(LoadLanguageFolder(path({}), table_), expected) << "with a separator at the end";
    EXPECT_EQ(table_.GetText(u"a") + table_.GetText(u"d") + table_.GetText(u"c"), u"123");
    put("a.lang.txt", "");
    put("c.lang.txt", "KEY: x");
    EXPECT_EQ(LoadLanguageFolder(folder_.path().u16string(), table_), u"");
}

TEST_F(LanguageLoader, EveryPlatformFailureIsTold) {
    const std::u16string file = path(u"a.lang.txt");
    put("a.lang.txt", "LANG: en\nKEY: a\nTEXT: " + std::string(300000, 't'));
    EXPECT_EQ(LoadLanguageFile(path(u"none"), table_), failure(u"-1", path(u"none")));
    for (std::uint32_t n = 1, failures = 0;; ++n) {
        SCOPED_TRACE(n);
        interlang table;
        fault::arm("*", n, platform::kErrorAccessDenied);
        const std::u16string text = LoadLanguageFile(file, table);
        EXPECT_EQ(table.state(), interlang::State::Built);
        EXPECT_EQ(text, table.HasText(u"a") ? u"" : failure(u"-1", file));
        EXPECT_EQ(table.GetText(u"a").size(), text.empty() ? 300000u : 1u) << "all of it or none";
        failures += text.empty() ? 0 : 1;
        if (!fault::fired()) {
            EXPECT_GT(failures, 0u);
            break;
        }
    }
}

TEST_F(LanguageLoader, OthersMayWriteWhileAFileIsReadInLargePieces) {
    put("a.lang.txt", "LANG: en\nKEY: a\nTEXT: " + std::string(300000, 't'));
    fault::resetCounts();
    EXPECT_EQ(LoadLanguageFile(path(u"a.lang.txt"), table_), u"");
    EXPECT_LE(fault::calls("ReadFile"), 6u);
    EXPECT_EQ(platform::host::lastCreateFile().share, platform::kFileShareRead | platform::kFileShareWrite);
    EXPECT_EQ(platform::host::lastCreateFile().access, platform::kGenericRead);
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
    put("a.lang.txt", std::string(40000, '\n'));
    std::uint32_t n = 0;
    do {
        SCOPED_TRACE(++n);
        FileStream file;
        Bound bound;
        std::uint32_t line = 0;
        ASSERT_TRUE(file.open(path(u"a.lang.txt"), OpenMode::Read));
        table_.BeginLoad();
        fault::arm("ReadFile", n, platform::kErrorAccessDenied, true);
        const bool read = table_.Parse(file, line, &bound);
        EXPECT_NE(read, fault::fired());
        table_.EndLoad();
    } while (fault::fired());
    fault::disarm();
    EXPECT_GT(n, 1u);

    put("a.lang.txt", "LANG: en\nKEY: a\nTEXT: 1");
    ASSERT_EQ(LoadLanguageFile(path(u"a.lang.txt"), table_), u"");
    FileStream out;
    ASSERT_TRUE(out.open(path(u"out"), OpenMode::CreateWrite));
    for (const char* const call : {"WriteFile", "WriteFile, short"}) {
        fault::arm(call, 1, platform::kErrorDiskFull);
        EXPECT_FALSE(table_.Write(out)) << call;
    }
    fault::disarm();

    fs::resize_file(folder_ / "a.lang.txt", 0x80000000);  // a hole, no disk space
    EXPECT_EQ(LoadLanguageFile(path(u"a.lang.txt"), table_), failure(u"-1", path(u"a.lang.txt")));
}

TEST_F(LanguageLoader, SystemLanguage) {
    put("a.lang.txt", "KEY: k\nLANG: en\nTEXT: E\nLANG: de\nTEXT: D\nLANG: DEU\nTEXT: A");
    EXPECT_EQ(LoadLanguageFolder(folder_.path().u16string(), table_), u"");
    platform::host::setLocaleInfo(platform::kLocaleAbbreviatedLanguageName, u"DEU");
    for (const auto& [iso, text] : {std::pair{u"de", u"D"}, {u"", u"A"}, {u"xx", u"E"}}) {
        platform::host::setLocaleInfo(platform::kLocaleIso639LanguageName, iso);
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
        const auto* data = reinterpret_cast<const char*>(out.data());
        EXPECT_TRUE(text.ends_with(std::string_view(data, static_cast<std::size_t>(out.size())))) << name;
    }
}

}  // namespace
}  // namespace owlkit
