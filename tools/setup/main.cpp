// nmshell-setup: enters the extension in the machine's registry, takes it out again, or tells what is there.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <optional>
#include <string>

#include "foundation/process/folders.h"
#include "foundation/stream/file_stream.h"
#include "platform/terminal.h"
#include "tools/common/text.h"
#include "tools/options/options.h"
#include "tools/setup/status.h"
#include "tools/setup/steps.h"

namespace setup {
namespace {

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 1 status: the menu does not appear or something is missing or different, 2 wrong "
    "usage,\n"
    "3 no administrator rights, 4 no nmshell.dll, 5 failed, 6 nmshell.dll cannot be loaded, 7 users can "
    "change "
    "the folder, 8 the registry could not be written and nothing was changed.";

// Messages on the terminal and, once one was opened, in a log file too.
class Terminal final : public Messages {
  public:
    void tell(const std::string& text) override {
        const bool printed = std::printf("%s\n", text.c_str()) >= 0 && std::fflush(stdout) == 0;
        printed_ = printed_ && printed;
        log(text);
    }
    void complain(const std::string& text) override {
        std::fflush(stdout);
        std::fprintf(stderr, "nmshell-setup: %s\n", text.c_str());
        log(text);
    }

    // Appends to `path` from now on.
    bool logTo(const std::u16string& path) { return log_.open(path, owlkit::OpenMode::AppendWrite); }

    bool wasLogged() const { return logged_; }
    // In the log or, where there is none, on standard output, which a program without a console has not.
    bool wasTold() const { return log_.isWritable() ? logged_ : printed_; }

  private:
    void log(const std::string& text) {
        const std::string line = text + "\n";
        if (log_.isWritable() && log_.write(line.data(), line.size()) != line.size())
            logged_ = false;
    }

    bool printed_ = true;
    bool logged_ = true;
    owlkit::FileStream log_;
};

// Where the module is expected: beside this program. Empty when that folder cannot be had.
std::u16string ownFolder() {
    std::u16string folder;
    return owlkit::getFolder(owlkit::FolderCode::Application, folder) ? folder : std::u16string();
}

class Program {
  public:
    Program() {
        app_.require_subcommand(1);
        app_.add_option("--log", log_, "add what is printed to this file, too")->type_name("FILE");
        app_.footer(kExitCodes);
        add("register", "enter nmshell.dll, which lies beside this program, in the registry",
            [this] { return registerModule(ownFolder(), Trial::Load, terminal_); });
        add("unregister", "remove every key and value of the extension, and this user's settings",
            [this] { return unregisterModule(terminal_); });
        add("apply-defaults", "give this user the machine's defaults where there is no setting yet",
            [this] { return applyDefaults(terminal_); });
        add("check-folder", "tell whether users could change what lies in a folder",
            [this] { return checkFolder(tools::wide(folder_), terminal_); })
            ->add_option("FOLDER", folder_)
            ->required();
        add("status", "show what is registered and whether, and in which language, the menu appears", [this] {
            return printStatus();
        })->add_flag("--json", json_, "print JSON");
    }

    int run() {
        if (const std::optional<int> code = options::parse(app_))
            return *code;
        return static_cast<int>(carryOut());
    }

  private:
    Result carryOut() {
        if (!log_.empty() && !terminal_.logTo(tools::wide(log_))) {
            terminal_.complain("cannot write to " + log_ + ". Nothing was changed.");
            return Result::Failed;
        }
        const Result result = step_();
        if (terminal_.wasLogged())
            return result;
        terminal_.complain("not all of this could be written to " + log_);
        return result == Result::Done ? Result::Failed : result;
    }

    template <class Step>
    CLI::App* add(const char* name, const char* description, Step step) {
        CLI::App* command = app_.add_subcommand(name, description);
        command->fallthrough();
        command->callback([this, step] { step_ = step; });
        return command;
    }

    Result printStatus() {
        const Status status = takeStatus(ownFolder() + u"nmshell.dll");
        std::string text = json_ ? toJson(status) : toText(status);
        text.pop_back();  // the last line feed
        terminal_.tell(text);
        if (!terminal_.wasTold()) {
            terminal_.complain("the status could not be written");
            return Result::Failed;
        }
        return status.menuAppears ? Result::Done : Result::Incomplete;
    }

    CLI::App app_{"Registers the Nullmark shell extension on this machine.", "nmshell-setup"};
    Terminal terminal_;
    std::string log_;
    std::string folder_;
    bool json_ = false;
    std::function<Result()> step_;
};

}  // namespace
}  // namespace setup

int main() {
    const platform::Utf8Output output;
    try {
        return setup::Program().run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "nmshell-setup: %s\n", error.what());
        return static_cast<int>(setup::Result::Failed);
    }
}
