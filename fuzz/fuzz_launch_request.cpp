// The command line from both ends: the request of any selection, cursor and path arrives as it was sent, also
// through a hand-over file, which is gone afterwards; any bytes in such a file are read as text.
#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "contextmenu/handover_file.h"
#include "contextmenu/launch_request.h"
#include "foundation/text/text.h"
#include "fuzz/fuzz.h"
#include "platform/host/fault.h"

using fuzz::require;

namespace {

// A temporary folder of this process, in memory if possible, with a space to be escaped.
class Folder {
  public:
    Folder() {
        const bool inMemory = std::filesystem::is_directory("/dev/shm");
        std::string name = inMemory ? "/dev/shm/nmshell fuzz XXXXXX" : "/tmp/nmshell fuzz XXXXXX";
        require(mkdtemp(name.data()) != nullptr);
        path_ = name;
        setenv("TMPDIR", path_.c_str(), 1);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    bool isEmpty() const { return std::filesystem::is_empty(path_); }

  private:
    std::filesystem::path path_;
};

const Folder& folder() {
    static const Folder instance;
    return instance;
}

std::vector<std::u16string> splitAtBlanks(const std::u16string& text) {
    std::vector<std::u16string> items;
    for (std::size_t at = 0; (at = text.find_first_not_of(u' ', at)) != std::u16string::npos;) {
        const std::size_t end = std::min(text.find(u' ', at), text.size());
        items.push_back(text.substr(at, end - at));
        at = end;
    }
    return items;
}

nmshell::LaunchRequest request(FuzzedDataProvider& input) {
    nmshell::LaunchRequest result;
    result.command = input.ConsumeIntegral<std::uint32_t>();
    result.cursorValid = input.ConsumeBool();
    if (result.cursorValid)
        result.cursor = {input.ConsumeIntegral<std::int32_t>(), input.ConsumeIntegral<std::int32_t>()};
    const bool asUnits = input.ConsumeBool();
    const std::size_t repeat = input.ConsumeIntegralInRange<std::size_t>(0, 3);
    result.path = fuzz::wide(input.ConsumeRandomLengthString(64));
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    const std::u16string paths = asUnits ? fuzz::units(bytes) : fuzz::wide(bytes);
    for (std::size_t i = 0; i < 1 + repeat * repeat * 20; ++i)  // long ones go through a file
        result.data += paths;
    return result;
}

void sendAndReceive(FuzzedDataProvider& input) {
    static nmshell::HandoverFiles files(u".nmark");
    nmshell::LaunchRequest sent = request(input);
    const std::u16string line = nmshell::buildArguments(sent.command, sent, files);
    const bool throughFile = sent.data.size() > nmshell::kMaxInlineData;
    require(folder().isEmpty() != throughFile);
    // Windows takes no command line of 32,768 characters and more.
    require(line.size() < 4096);
    const std::vector<std::u16string> items = splitAtBlanks(line);
    require(items.size() ==
            2u * ((sent.command != 0) + sent.cursorValid + !sent.data.empty() + !sent.path.empty()));
    nmshell::LaunchRequest received;
    require(nmshell::parseArguments(items, received, files) == sent.command);
    sent.path = owlkit::replaceAll(sent.path, u"%20", u" ");
    require(received == sent);
    require(folder().isEmpty());
}

void readAnyFile(const std::string& bytes) {
    const std::filesystem::path name = folder().path() / "any.nmark";
    std::ofstream(name, std::ios::binary) << bytes;
    const std::u16string text = nmshell::readHandoverFile(name.u16string());
    require(text.size() <= bytes.size());
    require(folder().isEmpty());
    bool failed = false;
    if (owlkit::ToWide(bytes, owlkit::kCharsetUtf8, owlkit::ErrorPolicy::Stop, u'?', &failed) != text)
        require(failed && text.find(u'\uFFFD') != std::u16string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    folder();
    FuzzedDataProvider input(data, size);
    if (input.ConsumeIntegralInRange(0, 7) == 7)
        readAnyFile(input.ConsumeRemainingBytesAsString());
    else
        sendAndReceive(input);
    return 0;
}
