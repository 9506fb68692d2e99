#include "contextmenu/launch_request.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

#include "contextmenu/application_launcher.h"
#include "contextmenu/handover_file.h"
#include "foundation/path/path_list.h"

namespace nmshell {
namespace {

using namespace std::string_literals;

std::vector<std::u16string> itemsOf(const std::u16string& parameters) {
    std::vector<std::u16string> items(1);
    for (const char16_t unit : parameters)
        unit == u' ' ? items.emplace_back() : items.back() += unit;
    return items;
}

TEST(LaunchRequest, IsWrittenAsFixedParameters) {
    const std::pair<LaunchRequest, std::u16string> kCases[] = {
        {{.command = 0xDEADBEEF, .cursor = {1, 2}}, u"-cmd deadbeef"},
        {{.cursor = {-1, INT32_MIN}, .cursorValid = true}, u"-cent /////wAAAIA="},
        {{.data = u"D:\\\0"s}, u"-data RAA6AFwAAAA="},
        {{.path = u"C:\\My Files\\a b\"\t%+.txt"}, u"-p C:\\My%20Files\\a%20b\"\t%+.txt"},
        {{0x101, u"x", u"p", {1, 256}, true}, u"-cmd 101 -cent AQAAAAABAAA= -data eAA= -p p"},
    };
    std::uint32_t counter = 0;
    for (const auto& [request, parameters] : kCases)
        EXPECT_EQ(ApplicationLauncher(counter).buildArguments(request.command, request), parameters);
}

// Any code units at all, and lengths on both sides of the limit for inline data.
TEST(LaunchRequest, ComesBackFromItsParameters) {
    std::mt19937 random(1);
    const auto any = [&] { return static_cast<std::uint32_t>(random()); };
    const auto text = [&](std::size_t length, std::u16string_view alphabet) {
        std::u16string result(length, u'\0');
        for (char16_t& unit : result)
            unit = any() % 3 == 0 ? static_cast<char16_t>(any()) : alphabet[any() % alphabet.size()];
        return result;
    };
    const std::size_t kLengths[] = {0, 1, 2, 511, 512, 513, 514, 3000};
    std::uint32_t counter = 7;
    ApplicationLauncher launcher(counter);
    launcher.setTempExtension(u".roundtrip");
    for (int i = 0; i < 200; ++i) {
        LaunchRequest request{.command = any() % 2 * any(), .cursorValid = any() % 2 != 0};
        if (request.cursorValid)
            request.cursor = {static_cast<std::int32_t>(any()), static_cast<std::int32_t>(any())};
        request.data = text(kLengths[any() % 8], u"a\0 \xD800\xDC00\xFEFF?"s);
        request.path = text(any() % 40, u"C:\\ .%2");
        std::ranges::replace(request.path, u'0', u'1');  // "%20" would come back as a blank
        const std::vector<std::u16string> items = itemsOf(launcher.buildArguments(request.command, request));
        EXPECT_EQ(std::ranges::count(items, u"-tfn"), request.data.size() > 512 ? 1 : 0);
        LaunchRequest back;
        EXPECT_EQ(parseArguments(items, back), request.command);
        EXPECT_EQ(back, request) << i;
    }
}

TEST(LaunchRequest, IsReadFromAnyArguments) {
    const std::pair<LaunchRequest, std::vector<std::u16string>> kCases[] = {
        {{},
         {u"", u"-cmd", u"-cmd zz", u"-cmd 100000000", u"-CMD 101", u"-cent Z", u"-data eAB5AA== -data e"}},
        {{}, {u"-cent ZAAAAMgAAAA= -cent ZAAA*AMgAAAA=", u"-data eAB5AA== -data eAB5*A=="}},
        {{}, {u"-data eAB5AA\u0100=", u"-data eAA= -tfn no%20such/file"}},
        {{.command = 0x10}, {u"-cmd 10zz", u"-cmd 0x10 -cmd 20", u"-cmd 0 -cmd zz -cmd \t10 z -cmd"}},
        {{.command = 0xFFFFFFFF}, {u"-cmd ffffffff", u"-cmd -1"}},
        {{.cursor = {100, 200}, .cursorValid = true}, {u"-cent !! -cent ZAAAAMgAAAA= x"}},
        {{.cursor = {100, 0}, .cursorValid = true}, {u"-cent ZAAAAA=="}},
        {{.data = u"xy"}, {u"-data eAA= -data eAB5AA==", u"-data eAB5AHo="}},
        {{.path = u"a"}, {u"-p b -p a", u"-cmd -tfn -p a", u"-cent -p a", u"-data -cmd -p a"}},
        {{.path = u"a b%2520"}, {u"-p a%20b%2520"}},
        {{.command = 5, .path = u"-cmd"}, {u"-p -cmd 5"}},
        {{.command = 5}, {u"-tfn -cmd -cmd 5", u"-data -cmd -cmd 5"}},
    };
    for (const auto& [expected, allParameters] : kCases) {
        for (const std::u16string& parameters : allParameters) {
            LaunchRequest request{1, u"old", u"old", {1, 1}, true};
            EXPECT_EQ(parseArguments(itemsOf(parameters), request), expected.command);
            EXPECT_EQ(request, expected) << testing::PrintToString(parameters);
        }
    }
}

TEST(HandoverFile, HasANameFromACycleOfHundred) {
    std::uint32_t counter = 0;
    ApplicationLauncher launcher(counter);
    EXPECT_TRUE(launcher.makeHandoverFileName().ends_with(u"tfn_db710640.tmp"));
    launcher.setTempExtension(u".nmark");
    EXPECT_TRUE(ApplicationLauncher(counter).makeHandoverFileName().ends_with(u"tfn_c9298960.tmp"));
    counter = 12;
    EXPECT_TRUE(launcher.makeHandoverFileName().ends_with(u"tfn_00172bc0.nmark"));
    counter = 99;
    EXPECT_TRUE(launcher.makeHandoverFileName().ends_with(u"tfn_edb88320.nmark"));
    EXPECT_TRUE(launcher.makeHandoverFileName().ends_with(u"tfn_db710640.nmark"));
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
    for (const std::size_t length :
         {6, 1023}) {  // the limit falls into the four bytes, and between two paths
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
