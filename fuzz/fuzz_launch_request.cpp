// The command line from both ends: any items give a request, and any request arrives as it was sent, also
// through a hand-over file, which is gone afterwards; any bytes in such a file are read as text.
#include <stdlib.h>

#include "contextmenu/handover_file.h"
#include "contextmenu/launch_request.h"
#include "foundation/path/path_list.h"
#include "foundation/text/text.h"
#include "testing/fuzz.h"
#include "testing/handover_in_memory.h"
#include "testing/temporary.h"

using fuzz::require;
using nmshell::LaunchRequest;

namespace {

// The folder of temporary files for this process, in memory if possible.
const test::TemporaryFolder& folder() {
    static const test::TemporaryFolder instance = [] {
        if (std::filesystem::is_directory("/dev/shm"))
            setenv("TMPDIR", "/dev/shm", 1);
        return test::TemporaryFolder();
    }();
    setenv("TMPDIR", instance.path().c_str(), 1);
    return instance;
}

bool isEmpty() {
    return std::filesystem::is_empty(folder().path());
}

// From any items; a hand-over file in memory holds the first one.
LaunchRequest parsed(const std::string& bytes) {
    const std::vector<std::u16string> items = test::itemsOf(fuzz::wide(bytes), u'\n');
    test::HandoverInMemory files;
    require(files.put(files.makeHandoverFileName(), items.front()));
    LaunchRequest request;
    require(nmshell::parseArguments(items, request, files) == request.command);
    require(request.cursorValid || request.cursor == nmshell::CursorPoint{});
    const owlkit::PathList paths = owlkit::PathList::fromText(request.data);
    owlkit::PathList rebuilt;
    for (const std::u16string_view path : paths)
        rebuilt.append(path);
    require(rebuilt == paths);
    require(request.data.starts_with(paths.text()));
    require(request.data.find(u'\0', paths.text().size()) == std::u16string::npos);
    return request;
}

LaunchRequest made(FuzzedDataProvider& input) {
    LaunchRequest result;
    result.command = input.ConsumeIntegral<std::uint32_t>();
    result.cursorValid = input.ConsumeBool();
    if (result.cursorValid)
        result.cursor = {input.ConsumeIntegral<std::int32_t>(), input.ConsumeIntegral<std::int32_t>()};
    const bool asUnits = input.ConsumeBool();
    const std::size_t repeat = fuzz::pick(input, 3);
    result.path = fuzz::wide(input.ConsumeRandomLengthString(64));
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    const std::u16string paths = asUnits ? fuzz::unitsOf(bytes) : fuzz::wide(bytes);
    for (std::size_t i = 0; i < 1 + repeat * repeat * 20; ++i)  // long ones go through a file
        result.data += paths;
    return result;
}

void sendAndReceive(LaunchRequest sent) {
    static nmshell::HandoverFiles files(u".nmark");
    const std::u16string line = nmshell::buildArguments(sent.command, sent, files);
    require(isEmpty() == (sent.data.size() <= nmshell::kMaxInlineData));
    // Windows takes no command line of 32,768 characters and more.
    require(line.size() < 4096 + 3 * sent.path.size());
    LaunchRequest received;
    require(nmshell::parseArguments(test::itemsOf(line), received, files) == sent.command);
    sent.path = owlkit::replaceAll(sent.path, u"%20", u" ");
    require(received == sent);
    require(isEmpty());
}

void readAnyFile(const std::string& bytes) {
    folder().write("any.nmark", bytes);
    const std::u16string text = nmshell::readHandoverFile((folder() / "any.nmark").u16string());
    require(text.size() <= bytes.size());
    require(isEmpty());
    bool failed = false;
    if (owlkit::ToWide(bytes, owlkit::kCharsetUtf8, owlkit::ErrorPolicy::Stop, u'?', &failed) != text)
        require(failed && text.find(u'\uFFFD') != std::u16string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    folder();
    FuzzedDataProvider input(data, size);
    const std::uint32_t what = fuzz::pick(input, 7);
    if (what == 7)
        readAnyFile(input.ConsumeRemainingBytesAsString());
    else
        sendAndReceive(what % 2 == 0 ? made(input) : parsed(input.ConsumeRemainingBytesAsString()));
    return 0;
}
