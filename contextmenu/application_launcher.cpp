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

// The parameters with `data` as their data part.
std::u16string compose(std::uint32_t command, const LaunchRequest& request, const std::u16string& data) {
    std::u16string arguments;
    if (command != 0)
        append(arguments, argument(kCommandKeyword,
                                   owlkit::formatNumber<char16_t>(command, owlkit::NumberFormat::LowerHex)));
    if (request.cursorValid)
        append(arguments, argument(kCursorKeyword, encodeCursor(request.cursor)));
    // Deliberate: the separating space is there for data that turns out to be none, too.
    if (!request.data.empty())
        append(arguments, data);
    if (!request.path.empty())
        append(arguments, argument(kPathKeyword, escapeSpaces(request.path)));
    return arguments;
}

}  // namespace

bool ApplicationLauncher::launch(void* owner, std::u16string_view executable, std::uint32_t command,
                                 bool elevate, const LaunchRequest& request) {
    if (moduleFolder_.empty() && !owlkit::getFolder(owlkit::kFolderApplication, moduleFolder_))
        return false;  // a bare name is looked for in places that anybody can write to
    std::u16string file = moduleFolder_;
    file += executable;
    const std::u16string verb = elevate ? u"runas" : u"open";
    const std::u16string parameters = buildArguments(command, request);  // may write a file: so it comes last
    return platform::shellExecute(owner, verb, file, parameters, nullptr, platform::kShowNormal) >
           kLastShellExecuteError;
}

std::u16string ApplicationLauncher::buildArguments(std::uint32_t command, const LaunchRequest& request) {
    if (request.data.size() <= kMaxInlineData)
        return compose(command, request, argument(kDataKeyword, encodeInlineData(request.data)));
    const std::u16string name = makeHandoverFileName();
    // Both are there before the file is: once it is written nothing may fail, or nobody would be told of it.
    std::u16string with = compose(command, request, argument(kDataFileKeyword, escapeSpaces(name)));
    std::u16string without = compose(command, request, {});
    return std::move(writeHandoverFile(name, request.data) ? with : without);
}

std::u16string ApplicationLauncher::makeHandoverFileName() {
    return handoverFileName(++handoverCounter_, tempExtension_);
}

}  // namespace nmshell
