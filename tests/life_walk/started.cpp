#include "tests/life_walk/started.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "contextmenu/handover_file.h"
#include "contextmenu/launch_request.h"
#include "foundation/codec/base64.h"
#include "foundation/path/path_list.h"
#include "foundation/text/text.h"
#include "platform/host/utf8.h"
#include "testing/temporary.h"
#include "testing/text.h"
#include "tests/life_walk/answers.h"

namespace nmshell {
namespace {

using namespace std::string_view_literals;

enum class Rights { Same, Administrator, AdministratorForClosedVolume };

struct Due {
    std::u16string_view arguments;  // before the cursor
    bool paths;
    Rights rights;
    std::u16string_view page;
};

constexpr Due kDue[kOffsets] = {
    {u"-cmd 101", true, Rights::Same, {}},
    {u"-cmd 102", true, Rights::AdministratorForClosedVolume, {}},
    {u"-cmd 104", true, Rights::Same, {}},
    {u"-cmd 105", true, Rights::Same, {}},
    {u"-cmd 105", false, Rights::Same, {}},
    {u"-cmd 105", true, Rights::Administrator, {}},
    {u"-cmd 105", false, Rights::Administrator, {}},
    {u"", false, Rights::Same, {}},
    {u"-cmd 106", false, Rights::Same, {}},
    {u"-cmd 107", false, Rights::Same, {}},
    {{}, false, Rights::Same, u"" NMSHELL_WEB_HOST "/user_guide.html"},
    {{}, false, Rights::Same, u"" NMSHELL_WEB_HOST "/updates/nmark_403.html"},
    {{}, false, Rights::Same, u"" NMSHELL_WEB_HOST "/upgrade.html"},
    {u"-cmd 108", false, Rights::Same, {}},
    {u"-cmd 109", false, Rights::Same, {}},
};

constexpr std::size_t kLongestInlineData = 512;
constexpr std::u16string_view kCursor = u"-cent ZAAAAMgAAAA=";  // (100, 200), where the stand-in's cursor is

std::uint32_t checkData(const std::u16string& data, const Selected& selected) {
    if (data == pathList(selected.paths))
        return 0;
    std::size_t at = 0;
    for (const std::u16string_view path : owlkit::PathList::fromText(data)) {
        while (at < selected.paths.size() && selected.paths[at] != path)
            ++at;
        EXPECT_LT(at++, selected.paths.size()) << platform::toHostName(path) << " was not selected";
    }
    EXPECT_TRUE(data.empty() || data.back() == u'\0');
    return data.empty() ? kWithoutData : kPathLeftOut;
}

// `data` receives what the application reads.
std::uint32_t checkParameters(const Due& due, const platform::host::ShellStart& start,
                              const Selected& selected, std::u16string& data) {
    const std::vector<std::u16string> list = test::itemsOf(start.parameters);
    const auto keyword = std::find(list.begin(), list.end(), u"-tfn");
    const std::u16string handover = keyword != list.end() && keyword + 1 != list.end() ? keyword[1] : u"";
    const std::u16string name = owlkit::replaceAll(handover, u"%20", u" ");
    const std::string content = test::fileBytes(platform::toHostName(name));
    LaunchRequest request;
    HandoverFiles files;
    parseArguments(list, request, files);
    std::uint32_t missing = 0;
    std::u16string expected(due.arguments);
    const auto append = [&expected](std::u16string_view part) {
        expected += expected.empty() ? u"" : u" ";
        expected += part;
    };
    if (request.cursorValid)
        append(kCursor);
    else
        missing |= kWithoutCursor;
    if (due.paths)
        missing |= checkData(request.data, selected);
    if (!request.data.empty() && request.data.size() <= kLongestInlineData) {
        append(u"-data " + owlkit::base64(test::bytesOf(request.data)));
    } else if (!request.data.empty()) {
        append(u"-tfn " + handover);
        EXPECT_EQ(content, platform::toHostName(request.data));
    } else if (start.parameters.ends_with(u' ')) {
        expected += u' ';  // stays where a hand-over file could not be written
    }
    EXPECT_TRUE(due.paths || request.data.empty());
    EXPECT_EQ(start.parameters, expected);
    if (!name.empty() && name.find(u'/') == std::u16string::npos)
        missing |= kHandoverMoved;
    data = std::move(request.data);
    return missing;
}

}  // namespace

std::u16string pathList(const std::vector<std::u16string>& paths) {
    std::u16string list;
    for (const std::u16string& path : paths)
        (list += path) += u'\0';
    return list;
}

std::uint32_t checkStart(std::uint32_t offset, const platform::host::ShellStart& start,
                         const Selected& selected, bool volumeOpens) {
    const Due& due = kDue[offset];
    EXPECT_EQ(start.show, 1);
    EXPECT_FALSE(start.hasFolder);
    EXPECT_EQ(start.extended, !due.page.empty());
    if (!due.page.empty()) {
        EXPECT_EQ(start.verb, u"open");
        EXPECT_EQ(start.file, due.page);
        EXPECT_EQ(start.parameters, u"");
        return 0;
    }
    EXPECT_EQ(start.file, selected.folder + u"nmark.exe");
    std::u16string data;
    const std::uint32_t missing = checkParameters(due, start, selected, data);
    const bool isClosed = !volumeOpens || !data.starts_with(u"D:");
    const bool elevated = due.rights == Rights::Administrator ||
                          (due.rights == Rights::AdministratorForClosedVolume && isClosed);
    EXPECT_EQ(start.verb, elevated ? u"runas"sv : u"open"sv);
    return missing;
}

}  // namespace nmshell
