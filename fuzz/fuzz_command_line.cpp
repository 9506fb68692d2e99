// The receiving side of the command line: any items give a request, which written out again is read as the
// same one. Hand-over files lie in memory, where one holds the first item.
#include "contextmenu/launch_request.h"
#include "foundation/path/path_list.h"
#include "fuzz/fuzz.h"
#include "testing/handover_in_memory.h"

using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::u16string> items = test::itemsOf(fuzz::wide(fuzz::view(data, size)), u'\n');
    test::HandoverInMemory files;
    require(files.put(files.makeHandoverFileName(), items.front()));

    nmshell::LaunchRequest request;
    require(nmshell::parseArguments(items, request, files) == request.command);
    require(request.cursorValid || request.cursor == nmshell::CursorPoint{});
    const owlkit::PathList paths = owlkit::PathList::fromText(request.data);
    owlkit::PathList rebuilt;
    for (const std::u16string_view path : paths)
        rebuilt.append(path);
    require(rebuilt == paths);
    require(request.data.starts_with(paths.text()));
    require(request.data.find(u'\0', paths.text().size()) == std::u16string::npos);

    // A path that holds an escape already does not make this round trip.
    if (request.path.find(u"%20") != std::u16string::npos)
        return 0;
    const std::u16string written = nmshell::buildArguments(request.command, request, files);
    nmshell::LaunchRequest again;
    nmshell::parseArguments(test::itemsOf(written), again, files);
    require(again == request);
    return 0;
}
