// The command line from both ends: the request of any selection, cursor and path arrives as it was sent, also
// through a hand-over file, which is gone afterwards; any bytes in such a file are read as text.
#include <stdlib.h>

#include "contextmenu/handover_file.h"
#include "contextmenu/launch_request.h"
#include "foundation/text/text.h"
#include "fuzz/fuzz.h"
#include "testing/temporary.h"

using fuzz::require;

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

nmshell::LaunchRequest request(FuzzedDataProvider& input) {
    nmshell::LaunchRequest result;
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

void sendAndReceive(FuzzedDataProvider& input) {
    static nmshell::HandoverFiles files(u".nmark");
    nmshell::LaunchRequest sent = request(input);
    const std::u16string line = nmshell::buildArguments(sent.command, sent, files);
    require(isEmpty() == (sent.data.size() <= nmshell::kMaxInlineData));
    // Windows takes no command line of 32,768 characters and more.
    require(line.size() < 4096);
    nmshell::LaunchRequest received;
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
    if (fuzz::pick(input, 7) == 7)
        readAnyFile(input.ConsumeRemainingBytesAsString());
    else
        sendAndReceive(input);
    return 0;
}
