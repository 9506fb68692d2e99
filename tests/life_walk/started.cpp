#include "tests/life_walk/started.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "contextmenu/handover_file.h"
#include "contextmenu/launch_request.h"
#include "foundation/path/path_list.h"
#include "platform/host/utf8.h"
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

std::u16string base64(std::u16string_view units) {
    constexpr std::u16string_view kDigits =
        u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::vector<std::uint32_t> bytes;
    for (const char16_t unit : units) {
        bytes.push_back(unit & 0xFF);
        bytes.push_back(unit >> 8);
    }
    std::u16string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t left = bytes.size() - i;
        const std::uint32_t group =
            bytes[i] << 16 | (left > 1 ? bytes[i + 1] << 8 : 0) | (left > 2 ? bytes[i + 2] : 0);
        for (std::size_t digit = 0; digit < 4; ++digit)
            text += digit <= left ? kDigits[group >> (18 - 6 * digit) & 63] : u'=';
    }
    return text;
}

std::u16string replaced(std::u16string text, std::u16string_view from, std::u16string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::u16string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

std::vector<std::u16string> items(std::u16string_view parameters) {
    std::vector<std::u16string> result;
    for (std::size_t end = 0; end != std::u16string_view::npos; parameters.remove_prefix(end + 1)) {
        end = parameters.find(u' ');
        result.emplace_back(parameters.substr(0, end));
        if (end == std::u16string_view::npos)
            break;
    }
    return result;
}

// The data part that must carry `data`; for a file, whose name is read from the command line, its content
// too.
std::u16string dataPart(std::u16string_view data, const std::u16string& handover,
                        const std::string& content) {
    if (data.size() <= kLongestInlineData)
        return u"-data " + base64(data);
    EXPECT_EQ(content, platform::toHostName(data));
    return u"-tfn " + handover;
}

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
    const std::vector<std::u16string> list = items(start.parameters);
    const auto keyword = std::find(list.begin(), list.end(), u"-tfn");
    const std::u16string handover = keyword != list.end() && keyword + 1 != list.end() ? keyword[1] : u"";
    const std::u16string name = replaced(handover, u"%20", u" ");
    const std::string content = fileBytes(platform::toHostName(name));
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
    if (!request.data.empty())
        append(dataPart(request.data, handover, content));
    else if (start.parameters.ends_with(u' '))
        expected += u' ';  // stays where a hand-over file could not be written
    EXPECT_TRUE(due.paths || request.data.empty());
    EXPECT_EQ(platform::toHostName(start.parameters), platform::toHostName(expected));
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

std::string fileBytes(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace nmshell
