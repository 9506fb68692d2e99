#include "contextmenu/handover_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "foundation/path/path_list.h"

namespace nmshell {
namespace {

using namespace std::string_literals;

TEST(HandoverFile, HasANameFromACycleOfHundred) {
    HandoverFiles files(u".nmark");
    EXPECT_TRUE(files.makeHandoverFileName().ends_with(u"tfn_db710640.nmark"));
    EXPECT_TRUE(files.makeHandoverFileName().ends_with(u"tfn_c9298960.nmark"));
    EXPECT_TRUE(HandoverFiles().makeHandoverFileName().ends_with(u"tfn_db710640.tmp"));
    EXPECT_TRUE(handoverFileName(13, u".x").ends_with(u"tfn_00172bc0.x"));
    EXPECT_TRUE(handoverFileName(100, u".x").ends_with(u"tfn_edb88320.x"));
    EXPECT_EQ(handoverFileName(101, u".x"), handoverFileName(1, u".x"));
}

TEST(HandoverFile, IsReadOnceAndHoldsOnlyTheLastText) {
    const std::u16string name = handoverFileName(1, u".once");
    const std::u16string text = u"\uFEFFC:\\\u00E4\0\xDC00\xD800 \U0001F4A5\r\n\0"s;
    EXPECT_TRUE(writeHandoverFile(name, std::u16string(2000, u'x')));
    EXPECT_TRUE(writeHandoverFile(name, text));
    EXPECT_EQ(readHandoverFile(name), text);
    EXPECT_FALSE(std::filesystem::exists(name));
    EXPECT_EQ(readHandoverFile(name), u"");
}

// Every zero character of the list ends a path that is whole, so the application never gets a shortened one.
TEST(HandoverFile, IsCutAtItsLimitWithoutShorteningAPath) {
    const std::u16string name = handoverFileName(1, u".limit");
    const std::string bytes = "C:\\" + std::string(1012, 'x') + "\xF0\x9F\x92\xA5.txt\0"s;
    const std::u16string path = u"C:\\" + std::u16string(1012, u'x') + u"\U0001F4A5.txt";
    // The limit falls into the four bytes, and between two paths.
    for (const std::size_t length : {6u, 1023u}) {
        std::string list = std::string(length, 'f') + '\0';
        for (int i = 0; i < 10300; ++i)
            list += bytes;
        std::ofstream(std::filesystem::path(name), std::ios::binary) << list;
        const std::u16string text = readHandoverFile(name);
        EXPECT_EQ(text.back(), length == 6 ? u'\xFFFD' : u'\0');
        const owlkit::PathList paths = owlkit::PathList::fromText(text);
        EXPECT_EQ(paths.count(), 10240u);
        EXPECT_EQ(std::ranges::count(paths, path), 10239);
    }
}

}  // namespace
}  // namespace nmshell
