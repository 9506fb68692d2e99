// rightclick: does what the shell does on a right-click, with the extension alone, and shows what comes of
// it: the entries with their texts, identifiers, states and icons, what choosing one starts, its help text, a
// picture of the menu.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "tools/options/options.h"
#include "tools/rightclick/client.h"
#include "tools/rightclick/command_menu.h"
#include "tools/rightclick/failure.h"
#include "tools/rightclick/report.h"
#include "tools/rightclick/right_click.h"
#include "tools/rightclick/text.h"

namespace rightclick {
namespace {

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 2 wrong usage, 3 a named object is missing, 4 the extension is not registered, not "
    "approved,\n"
    "switched off or without texts (of these, --modern tells the first alone and shows the others as a "
    "hidden root),\n"
    "5 another failure of the platform or of the output, 6 the extension refuses what --pick chooses, or has "
    "no help\n"
    "text for an offset.";

struct Arguments {
    std::vector<std::string> files;
    std::vector<std::string> drives;
    bool bin = false;
    std::string dll;
    bool noShell = false;
    std::uint32_t flags = CMF_NORMAL;
    bool all = false;
    bool json = false;
    bool modern = false;
    std::optional<std::uint16_t> pick;
    std::optional<std::uint16_t> helpText;
    std::string picture;
    std::string open = "nullmark";
};

void addOptions(CLI::App& app, Arguments& arguments) {
    app.add_option("PATH", arguments.files, "files and folders to right-click");
    app.add_option("--drive", arguments.drives, "drives to right-click, such as D:\\")->type_name("PATH");
    app.add_flag("--bin", arguments.bin, "right-click the Recycle Bin");
    app.add_option("--dll", arguments.dll, "the extension in this file instead of the registered one")
        ->type_name("FILE");
    app.add_flag(
        "--no-shell", arguments.noShell,
        "leave out the shell's own entries, which on Windows hold those of the registered extension too");
    app.add_option("--flags", arguments.flags, "CMF flags for QueryContextMenu")->type_name("N");
    app.add_flag("--all", arguments.all, "show the shell's own entries too");
    app.add_flag("--json", arguments.json, "print JSON");
    app.add_option("--pick", arguments.pick, "choose the entry with this offset (0 to 14)")
        ->type_name("OFFSET");
    app.add_option("--help-text", arguments.helpText, "print the help text of this offset")
        ->type_name("OFFSET");
    app.add_option("--shot", arguments.picture, "show the menu and write a picture of it (PNG)")
        ->type_name("FILE");
    app.add_option(
           "--open", arguments.open,
           "the submenu that --shot opens: nullmark (default), trash, none, or the offset of an entry in it")
        ->type_name("NAME");
    CLI::Option* const modern = app.add_flag("--modern", arguments.modern,
                                             "the commands of the first level of Windows 11's menu instead");
    for (const char* const other : {"--drive", "--bin", "--flags", "--all", "--shot"})
        modern->excludes(app.get_option(other));
    app.footer(kExitCodes);
}

Request requestFrom(const Arguments& arguments) {
    using enum nmshell::SelectionKind;
    if (!arguments.files.empty() + !arguments.drives.empty() + arguments.bin != 1)
        throw Failure(ExitCode::WrongUsage,
                      "name files and folders, or --drive PATH, or --bin: exactly one of them");
    Request request;
    request.kind = arguments.bin ? RecycleBin : arguments.drives.empty() ? Files : Drives;
    for (const std::string& path : arguments.drives.empty() ? arguments.files : arguments.drives)
        request.paths.push_back(wide(path));
    request.dll = wide(arguments.dll);
    request.shellEntries = !arguments.noShell;
    request.flags = arguments.flags;
    return request;
}

template <class Menu>
void act(const Arguments& arguments, Client& client, Menu& click, Report& report) {
    if (arguments.helpText) {
        report.helpText.emplace().offset = *arguments.helpText;
        report.helpText->result = click.helpText(*arguments.helpText, report.helpText->text);
    }
    if constexpr (std::is_same_v<Menu, RightClick>) {
        if (!arguments.picture.empty()) {
            report.picture = wide(arguments.picture);
            client.takePicture(*report.picture, click.submenuPosition(arguments.open));
        }
    }
    if (arguments.pick) {
        report.pick.emplace().offset = *arguments.pick;
        report.pick->starts =
            client.run([&] { report.pick->result = click.pick(*arguments.pick); }, arguments.json);
    }
}

template <class Menu>
Report rightClick(const Arguments& arguments, Client& client) {
    Report report;
    const Request request = requestFrom(arguments);
    Menu click(client);
    click.open(request);
    report.kind = request.kind;
    report.paths = client.paths();
    report.commands = arguments.modern;
    report.dataObject = arguments.modern ? "array" : client.dataObjectSource();
    report.result = click.result();
    report.identifiers = click.identifiers();
    report.entries = click.entries(arguments.all);
    act(arguments, client, click, report);
    return report;
}

int fail(ExitCode code, const char* message) {
    std::fprintf(stderr, "rightclick: %s\n", message);
    return static_cast<int>(code);
}

int run() {
    CLI::App app(
        "Right-clicks files, drives or the Recycle Bin and shows what the extension adds to the menu.",
        "rightclick");
    Arguments arguments;
    Client client;
    addOptions(app, arguments);
    client.addOptions(app);

    if (const std::optional<int> code = options::parse(app))
        return *code;
    const Report report = arguments.modern ? rightClick<CommandMenu>(arguments, client)
                                           : rightClick<RightClick>(arguments, client);
    const std::string text = arguments.json ? toJson(report) : toText(report);
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw Failure(ExitCode::PlatformFailure, "cannot write to standard output");
    const bool refused =
        (report.pick && FAILED(report.pick->result)) || (report.helpText && FAILED(report.helpText->result));
    return static_cast<int>(refused ? ExitCode::Refused : ExitCode::Done);
}

}  // namespace
}  // namespace rightclick

int main() {
    using namespace rightclick;
    try {
        return run();
    } catch (const Failure& failure) {
        return fail(failure.code(), failure.what());
    } catch (const std::exception& error) {
        return fail(ExitCode::PlatformFailure, error.what());
    }
}
