// nmark: a stand-in for the application. It reads its command line as the application does, shows the request
// and wipes nothing. With NMARK_REPORT set to a file name it also appends the request to that file, as one
// line of JSON: that is how the demonstration and the tests learn what arrived. It is the worked example for
// whoever receives the command line.
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "contextmenu/handover_file.h"
#include "contextmenu/launch_request.h"
#include "foundation/codec/hex.h"
#include "foundation/path/path_list.h"
#include "foundation/process/elevation.h"
#include "foundation/stream/file_stream.h"
#include "foundation/text/number.h"
#include "platform/command_line.h"
#include "platform/process.h"
#include "platform/terminal.h"
#include "tools/common/text.h"

namespace {

using Json = nlohmann::ordered_json;
using tools::utf8;

// What a command number asks for.
const char* commandName(std::uint32_t command) {
    switch (command) {
        case 0:
            return "start the application";
        case 0x101:
            return "wipe files";
        case 0x102:
            return "wipe drive";
        case 0x104:
            return "clean drive";
        case 0x105:
            return "wipe recycle bin";
        case 0x106:
            return "wipe swap file";
        case 0x107:
            return "options";
        case 0x108:
            return "upgrade";
        case 0x109:
            return "about";
        default:
            return "unknown command";
    }
}

Json strings(const auto& texts) {
    Json list = Json::array();
    for (const std::u16string_view text : texts)
        list.push_back(utf8(text));
    return list;
}

// Keeps the bytes of every hand-over file in hexadecimal before it is read and deleted: the tests give them
// to another receiver.
class RecordedFiles final : public nmshell::HandoverFiles {
  public:
    std::u16string take(const std::u16string& name) override {
        if (owlkit::FileStream file; file.open(name, owlkit::OpenMode::Read)) {
            std::string bytes(static_cast<std::size_t>(file.size()), '\0');
            bytes.resize(file.read(bytes.data(), bytes.size()));
            owlkit::hexEscape(taken_, bytes.data(), bytes.size(), false);
        }
        return HandoverFiles::take(name);
    }

    const std::string& taken() const { return taken_; }

  private:
    std::string taken_;
};

// The code units of the data in hexadecimal: JSON strings cannot hold every path.
std::string codeUnits(std::u16string_view data) {
    std::string hex;
    for (const char16_t unit : data)
        hex += owlkit::formatNumber<char>(unit, owlkit::NumberFormat::LowerHex, 4);
    return hex;
}

Json describe(const nmshell::LaunchRequest& request, const std::vector<std::u16string>& arguments,
              const std::string& handover) {
    Json report;
    report["command"] = request.command;
    report["commandName"] = commandName(request.command);
    report["cursor"] = nullptr;
    if (request.cursorValid)
        report["cursor"] = {{"x", request.cursor.x}, {"y", request.cursor.y}};
    report["path"] = utf8(request.path);
    report["paths"] = strings(owlkit::PathList::fromText(request.data));
    report["dataUnits"] = codeUnits(request.data);
    report["handover"] = handover;
    report["elevation"] = static_cast<std::uint32_t>(owlkit::cachedElevation());
    report["arguments"] = strings(arguments);
    report["commandLine"] = utf8(platform::commandLineText());
    return report;
}

void print(const nmshell::LaunchRequest& request, const std::vector<std::u16string>& arguments) {
    std::printf("command   0x%X  %s\n", request.command, commandName(request.command));
    if (request.cursorValid)
        std::printf("cursor    %d, %d\n", request.cursor.x, request.cursor.y);
    for (const std::u16string_view path : owlkit::PathList::fromText(request.data))
        std::printf("selected  %s\n", utf8(path).c_str());
    if (!request.path.empty())
        std::printf("path      %s\n", utf8(request.path).c_str());
    for (const std::u16string& argument : arguments)
        std::printf("argument  %s\n", utf8(argument).c_str());
}

bool append(const std::u16string& name, const std::string& line) {
    owlkit::FileStream file;
    return file.open(name, owlkit::OpenMode::AppendWrite) &&
           file.write(line.data(), line.size()) == line.size();
}

}  // namespace

int main() {
    const platform::Utf8Output output;
    const std::vector<std::u16string> arguments = platform::commandLineItems();
    nmshell::LaunchRequest request;
    RecordedFiles files;
    nmshell::parseArguments(arguments, request, files);
    print(request, arguments);

    const std::string report =
        describe(request, arguments, files.taken()).dump(-1, ' ', false, Json::error_handler_t::replace);
    std::printf("%s\n", report.c_str());
    const std::u16string target = platform::environmentVariable(u"NMARK_REPORT").value_or(u"");
    if (!target.empty() && !append(target, report + "\n")) {
        std::fprintf(stderr, "nmark: cannot write the report to %s\n", utf8(target).c_str());
        return 1;
    }
    return 0;
}
