// nmshell-setup: enters the extension in the machine's registry, takes it out again, or tells what is there.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>

#include "foundation/charset/convert.h"
#include "foundation/process/folders.h"
#include "foundation/registry/registry_key.h"
#include "platform/file.h"
#include "platform/module.h"
#include "platform/shell.h"
#include "platform/terminal.h"
#include "shellext/registration.h"
#include "tools/setup/status.h"

namespace {

// Exit codes. The command-line library has its own, from 100 up, for arguments that it does not know.
constexpr int kDone = 0;
constexpr int kIncomplete = 1;   // status: something is missing or different
constexpr int kNotElevated = 3;  // administrator rights are needed
constexpr int kNoModule = 4;     // nmshell.dll does not lie beside this program
constexpr int kFailed = 5;

using nmshell::EntryState;
using nmshell::EntryStatus;

std::string utf8(std::u16string_view text) {
    return owlkit::ToNarrow(text, owlkit::kCharsetUtf8);
}

// Where registering expects the module: beside this program. Just its name when that folder cannot be had.
std::u16string modulePath() {
    std::u16string folder;
    owlkit::getFolder(owlkit::kFolderApplication, folder);
    return folder + u"nmshell.dll";
}

bool exists(const std::u16string& file) {
    const std::uint32_t attributes = platform::fileAttributes(file);
    return attributes != platform::kInvalidFileAttributes &&
           !(attributes & platform::kFileAttributeDirectory);
}

// Asks at a key that every machine has; the list of approved extensions may be missing.
bool mayChangeTheMachine() {
    return owlkit::RegistryKey().isWritable(owlkit::RegistryRoot::LocalMachine, u"SOFTWARE");
}

int refuseWithoutRights() {
    std::fprintf(
        stderr,
        "nmshell-setup: administrator rights are needed to change HKEY_LOCAL_MACHINE. Nothing was changed.\n"
        "Run it again from a prompt that was started as administrator.\n");
    return kNotElevated;
}

int registerExtension() {
    const std::u16string module = modulePath();
    if (!exists(module)) {
        std::fprintf(stderr, "nmshell-setup: there is no %s. Nothing was changed.\n", utf8(module).c_str());
        return kNoModule;
    }
    if (!mayChangeTheMachine())
        return refuseWithoutRights();
    if (!nmshell::RegisterExtension()) {
        std::fprintf(stderr,
                     "nmshell-setup: the registry could not be written. The extension was unregistered.\n");
        return kFailed;
    }
    platform::notifyAssociationsChanged();
    std::printf("Registered %s\n", utf8(module).c_str());
    return kDone;
}

int unregisterExtension() {
    if (!mayChangeTheMachine())
        return refuseWithoutRights();
    nmshell::UnregisterExtension();
    platform::notifyAssociationsChanged();
    int result = kDone;
    for (const std::u16string& left : nmshell::remainingKeys()) {
        std::fprintf(stderr, "nmshell-setup: could not remove %s\n", utf8(left).c_str());
        result = kFailed;
    }
    if (result == kDone)
        std::printf("Unregistered, and the settings of the current user removed.\n");
    return result;
}

bool printEntry(const EntryStatus& status) {
    const char* state = status.state == EntryState::Present   ? "present  "
                        : status.state == EntryState::Missing ? "missing  "
                                                              : "different";
    const std::string name = status.entry.name.empty() ? "(default)" : utf8(status.entry.name);
    std::printf("%s  HKEY_LOCAL_MACHINE\\%s : %s = %s\n", state, utf8(status.entry.path).c_str(),
                name.c_str(), utf8(status.entry.text).c_str());
    if (status.state == EntryState::Different)
        std::printf("           found: %s\n", utf8(status.found).c_str());
    return status.state == EntryState::Present;
}

int printStatus() {
    bool complete = true;
    for (const EntryStatus& status : nmshell::registrationStatus(modulePath()))
        complete = printEntry(status) && complete;
    const std::u16string module = nmshell::registeredModule();
    if (module.empty()) {
        std::printf("missing    no module is registered\n");
        return kIncomplete;
    }
    const bool loads = exists(module) && platform::canLoadModule(module);
    std::printf("%s  %s %s\n", loads ? "present  " : "missing  ", utf8(module).c_str(),
                loads            ? "exists and loads"
                : exists(module) ? "exists but does not load"
                                 : "does not exist");
    return complete && loads ? kDone : kIncomplete;
}

}  // namespace

int main(int argc, char** argv) {
    const platform::Utf8Output output;
    CLI::App app{"Registers the Nullmark shell extension on this machine.", "nmshell-setup"};
    app.set_version_flag("--version", NMSHELL_VERSION);
    app.require_subcommand(1);
    int result = kFailed;
    app.add_subcommand("register", "enter nmshell.dll, which lies beside this program, in the registry")
        ->callback([&] { result = registerExtension(); });
    app.add_subcommand("unregister", "remove every key and value of the extension, and this user's settings")
        ->callback([&] { result = unregisterExtension(); });
    app.add_subcommand("status",
                       "show each key as present, missing or different, and whether the module loads")
        ->callback([&] { result = printStatus(); });
    app.footer(
        "Exit codes: 0 done, 1 incomplete (status), 3 no administrator rights, 4 no nmshell.dll, 5 failed.");
    CLI11_PARSE(app, argc, argv);
    return result;
}
