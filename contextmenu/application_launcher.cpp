#include "contextmenu/application_launcher.h"

#include "contextmenu/handover_file.h"
#include "foundation/process/folders.h"
#include "foundation/text/number.h"
#include "platform/shell.h"

namespace nmshell {
namespace {

constexpr std::int64_t kLastShellExecuteError = 32;

// A keyword and its value, which is one command-line item.
std::u16string argument(std::u16string_view keyword, const std::u16string& value) {
    std::u16string text(keyword);
    text += u' ';
    text += value;
    return text;
}

void append(std::u16string& arguments, const std::u16string& part) {
    if (!arguments.empty())
        arguments += u' ';
    arguments += part;
}

}  // namespace

bool ApplicationLauncher::launch(void* owner, std::u16string_view executable, std::uint32_t command,
                                 bool elevate, const LaunchRequest& request) {
    if (moduleFolder_.empty())
        owlkit::getFolder(owlkit::kFolderApplication, moduleFolder_);
    std::u16string file = moduleFolder_;
    file += executable;
    return platform::shellExecute(owner, elevate ? u"runas" : u"open", file, buildArguments(command, request),
                                  nullptr, platform::kShowNormal) > kLastShellExecuteError;
}

std::u16string ApplicationLauncher::buildArguments(std::uint32_t command, const LaunchRequest& request) {
    std::u16string arguments;
    if (command != 0)
        append(arguments, argument(kCommandKeyword,
                                   owlkit::formatNumber<char16_t>(command, owlkit::NumberFormat::LowerHex)));
    if (request.cursorValid)
        append(arguments, argument(kCursorKeyword, encodeCursor(request.cursor)));
    // Deliberate: the separating space is there before the data is tried, and stays when there turns out to
    // be none.
    if (!request.data.empty())
        append(arguments, encodeData(request.data));
    if (!request.path.empty())
        append(arguments, argument(kPathKeyword, escapeSpaces(request.path)));
    return arguments;
}

std::u16string ApplicationLauncher::encodeData(std::u16string_view data) {
    if (data.size() <= kMaxInlineData)
        return argument(kDataKeyword, encodeInlineData(data));
    const std::u16string name = makeHandoverFileName();
    return writeHandoverFile(name, data) ? argument(kDataFileKeyword, escapeSpaces(name)) : std::u16string();
}

std::u16string ApplicationLauncher::makeHandoverFileName() {
    return handoverFileName(++handoverCounter_, tempExtension_);
}

}  // namespace nmshell
