#include "contextmenu/launch_request.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "contextmenu/application_launcher.h"
#include "platform/file.h"

namespace nmshell {
namespace {

using namespace std::string_literals;

std::vector<std::u16string> items(const std::u16string& parameters) {
    std::vector<std::u16string> result;
    for (std::size_t at = 0; (at = parameters.find_first_not_of(u' ', at)) != std::u16string::npos;) {
        const std::size_t end = std::min(parameters.find(u' ', at), parameters.size());
        result.push_back(parameters.substr(at, end - at));
        at = end;
    }
    return result;
}

TEST(LaunchRequest, IsWrittenAsFixedParameters) {
    const struct {
        const char* name;
        LaunchRequest request;
        std::u16string parameters;
    } kCases[] = {
        {"nothing", {}, u""},
        {"command", {.command = 0x101}, u"-cmd 101"},
        {"widest command", {.command = 0xDEADBEEF}, u"-cmd deadbeef"},
        {"cursor", {.cursor = {100, 200}, .cursorValid = true}, u"-cent ZAAAAMgAAAA="},
        {"left of the main screen", {.cursor = {-1, INT32_MIN}, .cursorValid = true}, u"-cent /////wAAAIA="},
        {"cursor that was not read", {.command = 0x109, .cursor = {1, 2}}, u"-cmd 109"},
        {"data with its zeros", {.data = u"D:\\\0"s}, u"-data RAA6AFwAAAA="},
        {"path", {.path = u"C:\\My Files\\a b.txt"}, u"-p C:\\My%20Files\\a%20b.txt"},
        {"nothing but blanks is escaped", {.path = u"\"\t%+"}, u"-p \"\t%+"},
        {"everything",
         {.command = 0x102, .data = u"x", .path = u"p", .cursor = {1, 256}, .cursorValid = true},
         u"-cmd 102 -cent AQAAAAABAAA= -data eAA= -p p"},
    };
    std::uint32_t counter = 0;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ApplicationLauncher(counter).buildArguments(c.request.command, c.request), c.parameters);
    }
    EXPECT_EQ(counter, 0u);
}

// Any code units at all, and lengths on both sides of the limit for inline data.
TEST(LaunchRequest, ComesBackFromItsParameters) {
    std::mt19937 random(1);
    const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random()) % limit; };
    const auto text = [&](std::size_t length, const char16_t* alphabet, std::uint32_t letters) {
        std::u16string result(length, u'\0');
        for (char16_t& unit : result)
            unit = below(3) == 0 ? static_cast<char16_t>(random()) : alphabet[below(letters)];
        return result;
    };
    const std::size_t kLengths[] = {0, 1, 2, 511, 512, 513, 514, 3000};
    std::uint32_t counter = 7;
    ApplicationLauncher launcher(counter);
    launcher.setTempExtension(u".roundtrip");
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        LaunchRequest request;
        request.command = below(2) ? static_cast<std::uint32_t>(random()) : 0;
        request.cursorValid = below(2) != 0;
        if (request.cursorValid)
            request.cursor = {static_cast<std::int32_t>(random()), static_cast<std::int32_t>(random())};
        request.data = text(kLengths[below(std::size(kLengths))], u"a\0 \xD800\xDC00\xFEFF?", 7);
        request.path = text(below(40), u"C:\\ .%2", 7);
        // What looks like an escaped blank, or like a keyword, does not come back.
        std::replace(request.path.begin(), request.path.end(), u'0', u'1');
        const std::uint32_t files = counter;
        const std::vector<std::u16string> arguments =
            items(launcher.buildArguments(request.command, request));
        EXPECT_EQ(counter - files, request.data.size() > 512 ? 1u : 0u);
        LaunchRequest back;
        EXPECT_EQ(parseArguments(arguments, back), request.command);
        EXPECT_EQ(back, request);
        const auto file = std::find(arguments.begin(), arguments.end(), u"-tfn");
        if (file != arguments.end()) {
            EXPECT_EQ(platform::fileAttributes(unescapeSpaces(file[1])), platform::kInvalidFileAttributes);
        }
    }
}

TEST(LaunchRequest, IsReadFromAnyArguments) {
    const struct {
        const char* name;
        std::u16string arguments;
        LaunchRequest request;
    } kCases[] = {
        {"keyword without a value", u"-cmd", {}},
        {"not hexadecimal", u"-cmd zz", {}},
        {"not read to its end", u"-cmd 10zz", {.command = 0x10}},
        {"prefix", u"-cmd 0x1F", {.command = 0x1F}},
        {"minus", u"-cmd -1", {.command = 0xFFFFFFFF}},
        {"largest", u"-cmd ffffffff", {.command = 0xFFFFFFFF}},
        {"too large", u"-cmd 100000000", {}},
        {"the first command counts", u"-cmd 101 -cmd 102", {.command = 0x101}},
        {"until there is one", u"-cmd 0 -cmd zz -cmd 102 -cmd 103", {.command = 0x102}},
        {"value like a keyword is consumed", u"-cmd -tfn -p a", {.path = u"a"}},
        {"keywords are case-sensitive", u"-CMD 101 -cmd 102", {.command = 0x102}},
        {"unknown items", u"x -y -cmd 5 z", {.command = 5}},
        {"cursor", u"-cent ZAAAAMgAAAA=", {.cursor = {100, 200}, .cursorValid = true}},
        {"short cursor", u"-cent Z", {}},
        {"cursor of one coordinate", u"-cent ZAAAAA==", {.cursor = {100, 0}, .cursorValid = true}},
        {"cursor with strays", u"-cent ZAAA*AMgAAAA=", {}},
        {"a bad cursor after a good one", u"-cent ZAAAAMgAAAA= -cent !!", {}},
        {"cursor value is looked at again", u"-cent -p a", {.path = u"a"}},
        {"path value is looked at again", u"-p -cmd 5", {.command = 5, .path = u"-cmd"}},
        {"escaped blank in the path itself", u"-p a%20b%2520", {.path = u"a b%2520"}},
        {"data", u"-data eAB5AA==", {.data = u"xy"}},
        {"odd last byte", u"-data eAB5", {.data = u"x"}},
        {"short data", u"-data eAB5AA== -data e", {}},
        {"data with strays", u"-data eAB5AA== -data eAB5*A==", {}},
        {"data with a letter beyond ASCII", u"-data eAB5AA\u0100=", {}},
        {"the later data counts", u"-data eAA= -data eQA=", {.data = u"y"}},
        {"hand-over file that is not there", u"-data eAA= -tfn no%20such/file", {}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        LaunchRequest request{
            .command = 1, .data = u"old", .path = u"old", .cursor = {1, 1}, .cursorValid = true};
        EXPECT_EQ(parseArguments(items(c.arguments), request), c.request.command);
        EXPECT_EQ(request, c.request);
    }
    LaunchRequest request;
    parseArguments({u"-cmd", u" \t101", u"-p", u"a b"}, request);
    EXPECT_EQ(request, (LaunchRequest{.command = 0x101, .path = u"a b"}));
}

TEST(PathList, GivesOnlyWholePaths) {
    const std::u16string list = u"C:\\a\0\0C:\\a\\bc\0D:\\\0"s;
    const std::vector<std::u16string> paths = {u"C:\\a", u"", u"C:\\a\\bc", u"D:\\"};
    EXPECT_EQ(splitPathList(list), paths);
    for (std::size_t length = 0; length <= list.size(); ++length) {
        const std::vector<std::u16string> found = splitPathList(std::u16string_view(list).substr(0, length));
        EXPECT_TRUE(std::equal(found.begin(), found.end(), paths.begin())) << length;
        EXPECT_EQ(found.size(),
                  static_cast<std::size_t>(std::count(list.begin(), list.begin() + length, u'\0')));
    }
}

}  // namespace
}  // namespace nmshell
