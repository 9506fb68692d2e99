// The receiving side of the command line: any items give a request, which written out again is read as the
// same one. Items that name a hand-over file are left out, since reading one deletes it.
#include <cstdlib>
#include <cstring>

#include "contextmenu/application_launcher.h"
#include "contextmenu/launch_request.h"

namespace {

std::vector<std::u16string> split(std::u16string_view text, char16_t separator) {
    std::vector<std::u16string> items(1);
    for (const char16_t unit : text) {
        if (unit == separator)
            items.emplace_back();
        else
            items.back() += unit;
    }
    return items;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / 2, u'\0');
    if (size < 2)
        return 0;
    std::memcpy(text.data(), data, text.size() * 2);
    std::vector<std::u16string> items = split(text, u'\n');
    std::erase(items, nmshell::kDataFileKeyword);

    nmshell::LaunchRequest request;
    nmshell::parseArguments(items, request);
    for (const std::u16string& path : nmshell::splitPathList(request.data))
        if (request.data.find(path + u'\0') == std::u16string::npos)
            std::abort();

    // A path that holds an escape already, or data that would need a file, does not make this round trip.
    if (request.data.size() > nmshell::kMaxInlineData || request.path.find(u"%20") != std::u16string::npos)
        return 0;
    if (!request.cursorValid)
        request.cursor = {};
    std::uint32_t counter = 0;
    const std::u16string written =
        nmshell::ApplicationLauncher(counter).buildArguments(request.command, request);
    nmshell::LaunchRequest again;
    nmshell::parseArguments(split(written, u' '), again);
    if (again != request)
        std::abort();
    return 0;
}
