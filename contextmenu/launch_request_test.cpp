#include "contextmenu/launch_request.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "testing/handover_in_memory.h"

namespace nmshell {
namespace {

using namespace std::string_literals;
using test::HandoverInMemory;

std::vector<std::u16string> itemsOf(const std::u16string& parameters) {
    std::vector<std::u16string> items(1);
    for (const char16_t unit : parameters)
        unit == u' ' ? items.emplace_back() : items.back() += unit;
    return items;
}

LaunchRequest parse(const std::u16string& parameters, Handover& handover) {
    LaunchRequest request{1, u"old", u"old", {1, 1}, true};
    EXPECT_EQ(parseArguments(itemsOf(parameters), request, handover), request.command);
    return request;
}

TEST(LaunchRequest, IsWrittenAsFixedParameters) {
    const std::u16string longer(513, u'd');
    const struct Case {
        const char* name;
        LaunchRequest request;
        std::u16string parameters;
        bool isFull = false;
    } cases[] = {
        {"nothing", {}, u""},
        {"a command", {.command = 0xDEADBEEF, .cursor = {1, 2}}, u"-cmd deadbeef"},
        {"a cursor", {.cursor = {-1, INT32_MIN}, .cursorValid = true}, u"-cent /////wAAAIA="},
        {"data", {.data = u"D:\\\0"s}, u"-data RAA6AFwAAAA="},
        {"a path", {.path = u"C:\\My Files\\a b\"\t%+.txt"}, u"-p C:\\My%20Files\\a%20b\"\t%+.txt"},
        {"all", {0x101, u"x", u"p", {1, 256}, true}, u"-cmd 101 -cent AQAAAAABAAA= -data eAA= -p p"},
        {"a file", {.command = 1, .data = longer}, u"-cmd 1 -tfn C:\\Temp%20of%20A%20B\\1.nmark"},
        {"no file", {.command = 1, .data = longer}, u"-cmd 1 ", true},
        {"no file, a path", {.command = 1, .data = longer, .path = u"a b"}, u"-cmd 1  -p a%20b", true},
        {"no file and nothing before", {.data = longer, .path = u"p"}, u"-p p", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HandoverInMemory files;
        files.isFull = c.isFull;
        EXPECT_EQ(buildArguments(c.request.command, c.request, files), c.parameters);
    }
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
    HandoverInMemory files;
    std::uint32_t longOnes = 0;
    for (int i = 0; i < 200; ++i) {
        LaunchRequest request{.command = any() % 2 * any(), .cursorValid = any() % 2 != 0};
        if (request.cursorValid)
            request.cursor = {static_cast<std::int32_t>(any()), static_cast<std::int32_t>(any())};
        request.data = text(kLengths[any() % 8], u"a\0 \xD800\xDC00\xFEFF?"s);
        request.path = text(any() % 40, u"C:\\ .%2");
        std::ranges::replace(request.path, u'0', u'1');  // "%20" would come back as a blank
        longOnes += request.data.size() > 512 ? 1 : 0;
        EXPECT_EQ(parse(buildArguments(request.command, request, files), files), request) << i;
        EXPECT_EQ(files.made, longOnes);
        EXPECT_TRUE(files.files.empty());
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
        {{.command = 5}, {u"-tfn -cmd -cmd 5", u"-data -cmd -cmd 5", u"-cmd 5 -cmd -tfn"}},
    };
    HandoverInMemory none;
    for (const auto& [expected, allParameters] : kCases)
        for (const std::u16string& parameters : allParameters)
            EXPECT_EQ(parse(parameters, none), expected) << testing::PrintToString(parameters);
}

}  // namespace
}  // namespace nmshell
