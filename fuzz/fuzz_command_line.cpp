// The receiving side of the command line: any items give a request, which written out again is read as the
// same one. Items that name a hand-over file are left out, since reading one deletes it.
#include "contextmenu/application_launcher.h"
#include "contextmenu/launch_request.h"
#include "foundation/path/path_list.h"
#include "fuzz/fuzz.h"

using fuzz::require;

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
    std::vector<std::u16string> items = split(fuzz::wide(fuzz::view(data, size)), u'\n');
    std::erase(items, nmshell::kDataFileKeyword);

    nmshell::LaunchRequest request;
    require(nmshell::parseArguments(items, request) == request.command);
    require(request.cursorValid || request.cursor == nmshell::CursorPoint{});
    const owlkit::PathList paths = owlkit::PathList::fromText(request.data);
    owlkit::PathList rebuilt;
    for (const std::u16string_view path : paths)
        rebuilt.append(path);
    require(rebuilt == paths);
    require(request.data.starts_with(paths.text()));
    require(request.data.find(u'\0', paths.text().size()) == std::u16string::npos);

    // A path that holds an escape already, or data that would need a file, does not make this round trip.
    if (request.data.size() > nmshell::kMaxInlineData || request.path.find(u"%20") != std::u16string::npos)
        return 0;
    std::uint32_t counter = 0;
    const std::u16string written =
        nmshell::ApplicationLauncher(counter).buildArguments(request.command, request);
    nmshell::LaunchRequest again;
    nmshell::parseArguments(split(written, u' '), again);
    require(again == request);
    return 0;
}
