#include "contextmenu/handover_file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "contextmenu/application_launcher.h"
#include "foundation/process/folders.h"
#include "foundation/stream/file_stream.h"
#include "platform/file.h"

namespace nmshell {
namespace {

using namespace std::string_literals;

constexpr std::uint32_t kTemporary = 2;

std::u16string temporary(const char16_t* name) {
    std::u16string folder;
    owlkit::getFolder(kTemporary, folder);
    return folder + name;
}

bool exists(const std::u16string& name) {
    return platform::fileAttributes(name) != platform::kInvalidFileAttributes;
}

void writeBytes(const std::u16string& name, const std::string& bytes) {
    owlkit::FileStream file;
    ASSERT_TRUE(file.open(name, owlkit::kCreateWrite));
    ASSERT_EQ(file.write(bytes.data(), bytes.size()), bytes.size());
}

TEST(HandoverFile, HasANameFromACycleOfHundred) {
    std::uint32_t counter = 0;
    ApplicationLauncher launcher(counter);
    EXPECT_EQ(launcher.makeHandoverFileName(), temporary(u"tfn_db710640.tmp"));
    launcher.setTempExtension(u".nmark");
    EXPECT_EQ(ApplicationLauncher(counter).makeHandoverFileName(), temporary(u"tfn_c9298960.tmp"));
    counter = 99;
    EXPECT_EQ(launcher.makeHandoverFileName(), temporary(u"tfn_edb88320.nmark"));
    EXPECT_EQ(launcher.makeHandoverFileName(), temporary(u"tfn_db710640.nmark"));
    counter = 0xFFFFFFFF;
    EXPECT_EQ(launcher.makeHandoverFileName(), temporary(u"tfn_edb88320.nmark"));
}

TEST(HandoverFile, IsReadOnceAndHoldsOnlyTheLastText) {
    const std::u16string name = temporary(u"nmshell once.test");
    ASSERT_TRUE(writeHandoverFile(name, std::u16string(2000, u'x')));
    const std::u16string text = u"\uFEFFC:\\\u00E4\0\xDC00\xD800 \U0001F4A5\r\n\0"s;
    ASSERT_TRUE(writeHandoverFile(name, text));
    EXPECT_EQ(readHandoverFile(name), text);
    EXPECT_FALSE(exists(name));
    EXPECT_EQ(readHandoverFile(name), u"");
    EXPECT_FALSE(writeHandoverFile(temporary(u"nmshell no folder/x"), text));
}

// Every zero character of the list ends a path that is whole, so the application never gets a shortened one.
TEST(HandoverFile, IsCutAtItsLimitWithoutShorteningAPath) {
    const std::u16string name = temporary(u"nmshell limit.test");
    const std::string bytes = "C:\\" + std::string(1012, 'x') + "\xF0\x9F\x92\xA5.txt\0"s;
    const std::u16string path = u"C:\\" + std::u16string(1012, u'x') + u"\U0001F4A5.txt";
    for (const std::size_t length : {6, 1023}) {  // the limit falls into the character of four bytes, between paths
        SCOPED_TRACE(length);
        std::string list = std::string(length, 'f') + '\0';
        while (list.size() < kMaxHandoverBytes + 100)
            list += bytes;
        writeBytes(name, list);
        const std::u16string text = readHandoverFile(name);
        EXPECT_EQ(text.back(), length == 6 ? u'\xFFFD' : u'\0');
        EXPECT_FALSE(exists(name));
        const std::vector<std::u16string> paths = splitPathList(text);
        ASSERT_EQ(paths.size(), 10240u);
        EXPECT_EQ(paths[0], std::u16string(length, u'f'));
        EXPECT_EQ(std::count(paths.begin() + 1, paths.end(), path), 10239);
    }
    writeBytes(name, "a\x80\xE2\x82\0b\0"s);
    EXPECT_EQ(readHandoverFile(name), u"a\uFFFD\uFFFD\uFFFD\0b\0"s);
}

}  // namespace
}  // namespace nmshell
