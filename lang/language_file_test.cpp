#include <gtest/gtest.h>

#include <stdexcept>

#include "foundation/stream/memory_stream.h"
#include "lang/interlang.h"
#include "lang/read_observer.h"
#include "testing/text.h"

namespace owlkit {
namespace {

using namespace std::string_literals;

// "key|language|text" and a line break for every text: keys ascending, languages in the order of the list.
std::u16string dump(const interlang& table) {
    std::vector<std::u16string> keys, names;
    table.GetKeys(keys);
    table.GetLanguages(names);
    std::u16string result;
    for (const auto& key : keys) {
        for (const auto& name : names) {
            if (table.HasText(key, name))
                result += key + u"|" + name + u"|" + table.GetText(key, name) + u"\n";
        }
    }
    return result;
}

// Reads each file into the table within one load; the result is that of the last.
bool parse(interlang& table, const std::vector<std::string>& files, std::uint32_t& line) {
    bool read = false;
    table.BeginLoad();
    for (const std::string& file : files) {
        MemoryStream stream(file.data(), file.size()), before;
        stream.setByteOrder(ByteOrder::BigEndian);
        before.setByteOrder(ByteOrder::BigEndian);
        read = table.Parse(stream, line);
        EXPECT_TRUE(stream.settingsCompatible(before));
        EXPECT_EQ(stream.stringTerminator(), StringTerminator::None);
    }
    table.EndLoad();
    return read;
}

TEST(LanguageFile, Read) {
    const struct Case {
        const char* name;
        std::string file;
        bool read;
        std::uint32_t line;
        std::u16string entries;
    } cases[] = {
        {"empty", "", true, 0, u""},
        {"comments and blanks", "# a\n  // b\n\n \t#c", true, 4, u""},
        {"many keys, CR LF", "LANG:en\r\nKEY:a\r\nTEXT:1\r\nKEY: b\r\nTEXT:2", true, 5, u"a|en|1\nb|en|2\n"},
        {"many languages", "\x01KEY: a\x1F\nLANG: en\nTEXT:\t1 # \nLANG: de\nTEXT: 2\n", true, 5,
         u"a|en|1 #\na|de|2\n"},
        {"continued", "KEY: a\n# c\n b\nLANG: en\nTEXT: one\n\n  two\n//\nText: 3", true, 9,
         u"a b|en|one two Text: 3\n"},
        {"a key at the end", "LANG: en\nKEY: a\nTEXT: 1\nKEY: b", true, 4, u"a|en|1\n"},
        {"a language, a comment", "LANG: en\nKEY: a\nTEXT: 1\nLANG: de\n#\n", true, 5, u"a|en|1\n"},
        {"a comment at the end", "LANG: en\nKEY: a\nTEXT: 1\n#\n\n", true, 5, u"a|en|1\n"},
        {"an empty text", "LANG: en\nKEY: a\nTEXT:\nKEY: b\nTEXT:\\x20", true, 5, u"a|en|\nb|en| \n"},
        {"empty records", "KEY:\nKEY: a\nLANG: en\nLANG:\nKEY:\nTEXT: 1", true, 6, u"a|en|1\n"},
        {"UTF-8 with mark", "\xEF\xBB\xBFLANG: e\nKEY: a\nTEXT:\xC3\xA4", true, 3, u"a|e|\u00E4\n"},
        {"UTF-16", "\xFE\xFF\0K\0E\0Y\0:\0a\0\n\0L\0A\0N\0G\0:\0b\0\n\0T\0E\0X\0T\0:\x20\xAC\0"s, true, 3,
         u"a|b|\u20AC\n"},
        {"UTF-16, a line cut within a unit", "\xFF\xFE#\0x"s, true, 1, u""},
        {"UTF-16, a unit cut behind a line", "\xFF\xFE#\0\n\0x"s, true, 2, u""},
        {"a character as two surrogates",
         "LANG:e\nKEY:\xF0\x9F\x98\x80\nTEXT:1\nKEY:\xED\xA0\xBD\xED\xB8\x80\nTEXT:2", true, 5,
         u"\U0001F600|e|2\n"},
        {"late bytes that are no UTF-8",
         '#' + std::string(3000, ' ') + "\nLANG:e\nKEY:a\xFE\nTEXT:1\nKEY:a\xFF\nTEXT:\xC3", true, 6,
         u"a?|e|?\n"},
        {"key after key", "LANG: en\nKEY: a\nTEXT: 1\nKEY: b\n#\nKEY: c\nTEXT: 2", false, 6, u"a|en|1\n"},
        {"text after text", "LANG: en\nKEY: a\nTEXT:\nTEXT: 2\nKEY: b", false, 4, u""},
        {"no key", "LANG: en\nTEXT: 1\n\nLANG: de\nKEY: a", false, 4, u""},
        {"no language, at the end", "KEY: a\nTEXT: 1\n# end\n", false, 3, u""},
        {"nothing to continue", "#\nKey: a\n", false, 2, u""},
        {"behind a language", "KEY: a\nLANG: en\nx", false, 3, u""},
        {"behind an empty key", "KEY:\nx\n", false, 2, u""},
        {"behind an empty text", "KEY: a\nLANG: en\nTEXT:\nx\n", false, 4, u""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        interlang table;
        std::uint32_t line = 99;
        EXPECT_EQ(parse(table, {c.file}, line), c.read);
        EXPECT_EQ(line, c.line);
        EXPECT_EQ(dump(table), c.entries);
    }
}

// What it is told, one line each: "NUMBER KIND|CONTENT", "= NUMBER|KEY|LANGUAGE|TEXT" and "! RULE".
struct Recorder final : ReadObserver {
    void line(std::uint32_t number, LineKind kind, std::u16string_view content) override {
        told += std::to_string(number) + ' ' + "BCKLT+"[static_cast<int>(kind)] + '|';
        told += std::string(content.begin(), content.end()) + '\n';
    }
    void stored(const StoredText& text) override {
        told += "= " + std::to_string(text.line);
        for (const std::u16string_view part : {text.key, text.language, text.written})
            told += '|' + std::string(part.begin(), part.end());
        told += '\n';
    }
    void failed(SyntaxRule rule) override { told += "! " + std::to_string(static_cast<int>(rule)); }
    std::string told;
};

TEST(LanguageFile, TellsAnObserverWhatStandsWhere) {
    const struct Case {
        const char* file;
        const char* told;
    } cases[] = {
        {" # a\n\nLANG: e\n# no\nKEY: k\nTEXT: 1\\n\n 2\nKEY: l\nTEXT:",
         "1 C|# a\n2 B|\n3 L|e\n4 C|# no\n5 K|k\n6 T|1\\n\n7 +|2\n8 K|l\n= 6|k|e|1\\n 2\n9 T|\n= 9|l|e|\n"},
        {"KEY: a\nKEY: b", "1 K|a\n2 K|b\n! 0"},
        {"TEXT: a\n\nTEXT: b", "1 T|a\n2 B|\n3 T|b\n! 1"},
        {"LANG: a\nTEXT: b\nLANG: c", "1 L|a\n2 T|b\n3 L|c\n! 2"},
        {"KEY: a\nTEXT: b", "1 K|a\n2 T|b\n! 3"},
        {"LANG: a\nb", "1 L|a\n2 +|b\n! 4"},
        {"KEY:\nb", "1 K|\n2 +|b\n! 5"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        MemoryStream stream(c.file, std::string_view(c.file).size());
        interlang table;
        Recorder recorder;
        std::uint32_t line = 0;
        table.BeginLoad();
        table.Parse(stream, line, &recorder);
        EXPECT_EQ(recorder.told, c.told);
    }
}

TEST(LanguageFile, LongLinesAndTwoStreamsInOneLoad) {
    const std::string k(1 << 20, 'k'), t(1 << 20, 't');
    interlang table;
    std::uint32_t line = 0;
    EXPECT_TRUE(parse(table, {"LANG: en\nKEY: a", "TEXT: 1\nKEY: b\n" + k + "\nTEXT: " + t}, line));
    EXPECT_EQ(table.GetText(u"a"), u"1");
    EXPECT_EQ(table.GetText(u"b " + std::u16string(k.begin(), k.end())), std::u16string(t.begin(), t.end()));
    EXPECT_FALSE(parse(table, {"TEXT: 1"}, line)) << "key and language end with the load";
}

std::string written(const interlang& table, const char16_t* language, const char16_t* reference) {
    MemoryStream out;
    EXPECT_TRUE(table.Write(out, language, reference));
    EXPECT_TRUE(out.settingsCompatible(MemoryStream()));
    return test::bytesOf(out);
}

TEST(LanguageFile, Write) {
    interlang table;
    std::uint32_t line = 0;
    ASSERT_TRUE(parse(table,
                      {"LANG: en\nKEY: b1\nTEXT: low\nKEY: Z_`\nTEXT: \\x20up\\n\nKEY: AB\nTEXT: short\n"
                       "KEY: LANGUAGE\nTEXT: English\nLANG: de\nKEY: Z_`\nTEXT: \xC3\xBC"},
                      line));
    const std::string rule(40, '#');
    const std::string english = rule + "\nLANG: en\n" + rule +
                                "\n\nKEY: LANGUAGE\nTEXT: English\n\nKEY: Z_`\nTEXT: \\x20up\\n\n\n"
                                "KEY: AB\nTEXT: short\n\nKEY: b1\nTEXT: low\n\n";
    EXPECT_EQ(written(table, u"en", u"xx"), english);
    EXPECT_EQ(written(table, u"", u""), english + written(table, u"de", u""));
    EXPECT_EQ(written(table, u"de", u"en"), rule + "\nLANG: de\n" + rule +
                                                "\n\n# Localized language name\nKEY: LANGUAGE\nTEXT: \n\n"
                                                "# \\x20up\\n\nKEY: Z_`\nTEXT: \xC3\xBC\n\n"
                                                "# short\nKEY: AB\nTEXT: \n\n# low\nKEY: b1\nTEXT: \n\n");
    EXPECT_THROW(written(table, u"xx", u""), std::logic_error);
}

TEST(LanguageFile, CheckConsistency) {
    interlang table;
    std::uint32_t line = 0;
    ASSERT_TRUE(parse(table,
                      {"LANG: en\nKEY: new\nTEXT:\nKEY: all\nTEXT: 1\nLANG: de\nTEXT: 2\nLANG: fr\nTEXT: 3\n",
                       "KEY: part\nTEXT: 4\nLANG: en\nTEXT: 5\nLANG: de\nKEY: old\nTEXT: 6"},
                      line));
    const std::u16string first =
        u"KEY: new\nNew Key? This key is absent in the following languages: de fr\n\n"
        u"KEY: old\nObsolete Key? This key has no primary language translation.\n\n";
    std::u16string report = u"before";
    for (const std::int32_t maximum : {0, -1, 3, 2}) {
        EXPECT_FALSE(table.CheckConsistency(report, maximum));
        EXPECT_EQ(report, first + (maximum == 2 ? u"More errors found, but report truncated."
                                                : u"KEY: part\nNew Key? This key is absent in the following "
                                                  u"languages: de\n\n"));
    }
    ASSERT_TRUE(parse(table,
                      {"LANG: de\nKEY: new\nTEXT:\nKEY: part\nTEXT:\nLANG: fr\nKEY: new\nTEXT:\n",
                       "KEY: old\nTEXT:\nLANG: en\nTEXT:"},
                      line));
    EXPECT_TRUE(table.CheckConsistency(report, 1));
    EXPECT_EQ(report, u"");
}

}  // namespace
}  // namespace owlkit
