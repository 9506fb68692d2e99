// interlang: the translators' program. It checks language files, counts what is translated, rewrites them,
// exchanges them with the programs that translators use, and shows the menu they make.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>

#include "platform/terminal.h"
#include "tools/interlang/commands.h"
#include "tools/options/options.h"

namespace translators {
namespace {

using Command = ExitCode (*)(const Arguments&);

constexpr const char* kExitCodes =
    "Exit codes: 0 done or nothing found, 1 warnings only, 2 errors, or the command failed or was used "
    "wrongly.";

void addFiles(CLI::App* command, Arguments& arguments) {
    command->add_option("FILES", arguments.files, "language files; none: those of the folder");
    command->add_option("--folder", arguments.folder, "the folder that is read when no file is named")
        ->type_name("DIR")
        ->capture_default_str();
}

void addReference(CLI::App* command, Arguments& arguments) {
    command->add_option("--reference", arguments.reference, "the language that others are compared with")
        ->type_name("CODE")
        ->capture_default_str();
    command
        ->add_option("--reference-file", arguments.referenceFile,
                     "its file, when it is neither named nor beside the first one")
        ->type_name("FILE");
}

CLI::Option* addLanguage(CLI::App* command, Arguments& arguments) {
    return command->add_option("--lang", arguments.language, "the language")->type_name("CODE");
}

void addOutput(CLI::App* command, Arguments& arguments) {
    command->add_option("-o,--output", arguments.output, "write to this file, not to standard output")
        ->type_name("FILE");
    command->add_flag("--force", arguments.force, "replace the file if it exists");
}

void addJson(CLI::App* command, Arguments& arguments) {
    command->add_flag("--json", arguments.json, "print JSON");
}

void addChecks(CLI::App* command, Arguments& arguments) {
    for (std::size_t i = 0; i < kChecks.size(); ++i) {
        const auto check = static_cast<Check>(i);
        if (check == Check::Consistency) {  // tells more than what is wrong
            command->add_flag_callback(
                "--consistency", [&arguments, check] { arguments.checks.insert(check); }, kChecks[i].what);
            continue;
        }
        arguments.checks.insert(check);
        const std::string severity = kChecks[i].error ? "error: " : "warning: ";
        command->add_flag_callback(
            "--no-" + std::string(kChecks[i].name), [&arguments, check] { arguments.checks.erase(check); },
            severity + kChecks[i].what);
    }
}

void addMenu(CLI::App* command, Arguments& arguments) {
    addLanguage(command, arguments)->required();
    command->add_option("--kind", arguments.kind, "what is right-clicked")
        ->check(CLI::IsMember({"files", "drive", "bin"}))
        ->capture_default_str();
    command->add_option("--count", arguments.count, "how many files or drives")->capture_default_str();
    command->add_option("--type", arguments.type, "what a single file is")
        ->check(CLI::IsMember({"file", "folder"}))
        ->capture_default_str();
    command->add_option("--recycle-bin", arguments.recycleBin, "the state of the Recycle Bin")
        ->check(CLI::IsMember({"full", "empty", "none"}))
        ->capture_default_str();
    command->add_option("--elevation", arguments.elevation, "0 none, 1 limited, 2 full")
        ->check(CLI::Range(0, 2))
        ->capture_default_str();
    command->add_flag("--system-drive", arguments.systemDrive, "the drive is the system's");
}

class Program {
  public:
    Program()
        : app_("Checks, counts, rewrites and exchanges language files, and shows their menu.", "interlang") {
        app_.allow_windows_style_options(false);  // a path may begin with a slash
        app_.require_subcommand(1);
        app_.footer(kExitCodes);
        CLI::App* check = add("check", "tell what is wrong with language files", runCheck, true);
        addJson(check, arguments_);
        addChecks(check, arguments_);
        CLI::App* stats = add("stats", "tell how far each language is translated", runStats, true);
        addJson(stats, arguments_);
        stats
            ->add_option("--fail-under", arguments_.failUnder, "exit with 2 if a language is translated less")
            ->type_name("PERCENT")
            ->check(CLI::Range(0, 100));
        addInPlace(add("format", "rewrite files in the layout of the program", runFormat, true));
        addInPlace(add("merge", "format, and add the reference's new keys as untranslated", runMerge, true));
        CLI::App* fill =
            add("fill", "copy a folder's files, missing and empty texts taken from the reference", runFill,
                false);
        fill->add_option("FOLDER", arguments_.folder, "the folder of the language files")
            ->capture_default_str();
        fill->add_option("-o,--output", arguments_.output, "the folder of the copies")
            ->type_name("DIR")
            ->required();
        fill->add_flag("--delete", arguments_.removeOthers,
                       "delete language files of DIR that FOLDER does not have");
        CLI::App* fresh = add("new", "make the file of a new language", runNew, false);
        fresh->add_option("CODE", arguments_.language, "the new language")->required();
        fresh->add_option("--folder", arguments_.folder, "where the reference's file is")
            ->capture_default_str();
        addOutput(fresh, arguments_);
        addExchange();
        addMenu(add("show", "show the menu as it will look", runShow, true), arguments_);
    }

    int run() {
        if (const std::optional<int> code = options::parse(app_))
            return *code;
        return static_cast<int>(command_(arguments_));
    }

  private:
    CLI::App* add(const char* name, const char* what, Command command, bool takesFiles) {
        CLI::App* app = app_.add_subcommand(name, what);
        app->callback([this, command] { command_ = command; });
        if (takesFiles)
            addFiles(app, arguments_);
        addReference(app, arguments_);
        return app;
    }

    void addExchange() {
        CLI::App* outgoing =
            add("export", "write a language as PO or XLIFF 1.2, or a PO template", runExport, true);
        CLI::Option* language = addLanguage(outgoing, arguments_);
        outgoing->add_option("--to", arguments_.format, "the format")
            ->check(CLI::IsMember({"po", "xliff", "pot"}))
            ->capture_default_str();
        outgoing->add_flag("--all", arguments_.all, "every language but the reference; -o names a folder")
            ->excludes(language);
        addOutput(outgoing, arguments_);
        CLI::App* incoming =
            add("import", "put translations from PO or XLIFF 1.2 into language files", runImport, false);
        incoming->add_option("FILE", arguments_.files, "the PO or XLIFF file, or a folder of them")
            ->required()
            ->expected(1);
        addLanguage(incoming, arguments_);
        incoming->add_option("--folder", arguments_.folder, "the language files, when a folder is imported")
            ->type_name("DIR")
            ->capture_default_str();
        incoming->add_option("-o,--output", arguments_.output, "the language file that is updated or made")
            ->type_name("FILE");
        incoming->add_flag("--replace", arguments_.replace,
                           "drop the texts that do not come in; without it they are kept");
        incoming->add_flag("--strict", arguments_.strict, "write nothing where there is a warning");
        incoming->add_flag("--force", arguments_.force, "add the language to a file that has others only");
    }

    void addInPlace(CLI::App* command) {
        command->add_flag("--in-place", arguments_.inPlace, "rewrite the files, not to standard output");
    }

    CLI::App app_;
    Arguments arguments_;
    Command command_ = nullptr;
};

}  // namespace
}  // namespace translators

int main() {
    const platform::Utf8Output output;
    try {
        return translators::Program().run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "interlang: %s\n", error.what());
        return static_cast<int>(translators::ExitCode::Errors);
    }
}
