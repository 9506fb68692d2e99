#include "contextmenu/launch_request.h"

#include <gtest/gtest.h>

#include "foundation/codec/base64.h"
#include "testing/handover_in_memory.h"
#include "testing/text.h"

namespace nmshell {
namespace {

using namespace std::string_literals;
using test::HandoverInMemory;

LaunchRequest parse(const std::u16string& parameters, Handover& handover) {
    LaunchRequest request{1, u"old", u"old", {1, 1}, true};
    EXPECT_EQ(parseArguments(test::itemsOf(parameters), request, handover), request.command);
    return request;
}

TEST(LaunchRequest, IsWrittenAsFixedParametersAndReadBack) {
    const std::u16string longest = u"\0 \xD800\xFEFF"s + std::u16string(508, u'd'), longer = longest + u'd';
    const struct Case {
        const char* name;
        LaunchRequest request;
        std::u16string parameters;
        bool isFull = false;
    } cases[] = {
        {"nothing", {}, u""},
        {"a command", {.command = 0xDEADBEEF}, u"-cmd deadbeef"},
        {"a cursor", {.cursor = {-1, INT32_MIN}, .cursorValid = true}, u"-cent /////wAAAIA="},
        {"data", {.data = u"D:\\\0"s}, u"-data RAA6AFwAAAA="},
        {"a path", {.path = u"C:\\My Files\\a b\"\t%+.txt"}, u"-p C:\\My%20Files\\a%20b\"\t%+.txt"},
        {"all", {0x101, u"x", u"p", {1, 256}, true}, u"-cmd 101 -cent AQAAAAABAAA= -data eAA= -p p"},
        {"the longest data", {.data = longest}, u"-data " + owlkit::base64(test::bytesOf(longest))},
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
        if (!c.isFull) {
            EXPECT_EQ(parse(c.parameters, files), c.request);
        }
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
