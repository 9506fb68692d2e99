#include "tools/setup/steps.h"

#include <stdexcept>
#include <utility>

#include "comserver/identifiers.h"
#include "foundation/path/path.h"
#include "foundation/process/folders.h"
#include "foundation/registry/registry_key.h"
#include "platform/file.h"
#include "platform/image.h"
#include "platform/shell.h"
#include "shellext/registration.h"
#include "tools/common/text.h"
#include "tools/setup/folder_access.h"
#include "tools/setup/status.h"

namespace setup {
namespace {

using nmshell::RegistrationResult;
using owlkit::RegistryKey;
using owlkit::RegistryMode;
using owlkit::RegistryRoot;
using owlkit::RegistryValueType;
using tools::utf8;

constexpr const char16_t* kDefaultsPath = u"Software\\NMark Shell\\Defaults\\";

// Asks at a key that every machine has; the list of approved extensions may be missing.
bool mayChangeTheMachine() {
    return RegistryKey().isWritable(RegistryRoot::LocalMachine, u"SOFTWARE");
}

Result refuseWithoutRights(Messages& messages) {
    messages.complain(
        "administrator rights are needed to change HKEY_LOCAL_MACHINE. Nothing was changed.\n"
        "Run it again from a prompt that was started as administrator.");
    return Result::NotElevated;
}

// Copies the default called `name` if there is one of that type and the user has no value for it; answers
// whether it did.
bool copyDefault(const std::u16string& name, RegistryValueType type) {
    const std::u16string settingsPath(nmshell::kSettingsPath);
    RegistryKey defaults;
    if (!defaults.open(RegistryRoot::LocalMachine, kDefaultsPath + name, RegistryMode::ReadOnly) ||
        !defaults.valueExists(name) || defaults.valueType(name) != type)
        return false;
    RegistryKey settings;
    if (settings.open(RegistryRoot::CurrentUser, settingsPath, RegistryMode::ReadOnly) &&
        settings.valueExists(name))
        return false;
    if (!settings.create(RegistryRoot::CurrentUser, settingsPath))
        throw std::runtime_error("the settings key cannot be made");
    if (type == RegistryValueType::Dword)
        settings.writeDword(name, static_cast<std::uint32_t>(defaults.readDword(name)));
    else
        settings.writeString(name, defaults.readString(name));
    return true;
}

Result tellFailure(RegistrationResult result, Messages& messages) {
    const char* const outcome =
        result == RegistrationResult::NothingChanged ? "Nothing was changed."
        : result == RegistrationResult::Removed
            ? "The extension was unregistered."
            : "An approval could not be put back; run \"nmshell-setup unregister\" or register again.";
    messages.complain(std::string("the registry could not be written. ") + outcome);
    return result == RegistrationResult::NothingChanged ? Result::Unchanged : Result::Failed;
}

}  // namespace

Result registerModule(const std::u16string& folder, Trial trial, Messages& messages) {
    const std::u16string module = folder + u"nmshell.dll";
    if (owlkit::pathType(module) != owlkit::PathType::File) {
        messages.complain("there is no " + utf8(module) + ". Nothing was changed.");
        return Result::NoModule;
    }
    if (!mayChangeTheMachine())
        return refuseWithoutRights(messages);
    const platform::Status error =
        trial == Trial::Load ? platform::loadError(module) : platform::headerError(module);
    if (const std::string fault = describeLoadError(error); !fault.empty()) {
        messages.complain(utf8(module) + " cannot be loaded: " + fault + ". Nothing was changed.");
        return Result::UnusableModule;
    }
    if (const std::u16string real = behindLink(folder); !real.empty())
        messages.complain("warning: " + utf8(folder) + " leads to " + utf8(real) +
                          " through a link, which the shell of every user will follow");
    for (const Intruder& intruder : intruders(folder))
        messages.complain("warning: " + describe(intruder) + ", which the shell of every user will load");
    owlkit::recordApplicationFolder(folder);
    if (const RegistrationResult result = nmshell::tryRegisterExtension();
        result != RegistrationResult::Registered)
        return tellFailure(result, messages);
    platform::notifyAssociationsChanged();
    messages.tell("Registered " + utf8(module));
    return Result::Done;
}

Result unregisterModule(Messages& messages) {
    if (!mayChangeTheMachine())
        return refuseWithoutRights(messages);
    nmshell::UnregisterExtension();
    platform::notifyAssociationsChanged();
    Result result = Result::Done;
    for (const std::u16string& left : remainingKeys()) {
        messages.complain("could not remove " + utf8(left));
        result = Result::Failed;
    }
    if (result == Result::Done)
        messages.tell("Unregistered, and the settings of the current user removed.");
    return result;
}

Result checkFolder(const std::u16string& folder, Messages& messages) {
    if (const std::u16string real = behindLink(folder); !real.empty()) {
        messages.complain(utf8(folder) + " is refused: it leads to " + utf8(real) +
                          " through a link, which can be changed later. Name that folder itself.");
        return Result::UnsafeFolder;
    }
    const std::vector<Intruder> found = intruders(folder);
    const bool warning = liesInProgramFiles(folder);
    for (const Intruder& intruder : found)
        messages.complain((warning ? "warning: " : "") + describe(intruder));
    if (found.empty() || warning)
        return Result::Done;
    messages.complain(
        utf8(folder) +
        " is refused: what the shell of every user loads must be kept from users. Choose a folder in "
        "Program Files, or take their rights to write away.");
    return Result::UnsafeFolder;
}

Result applyDefaults(Messages& messages) {
    constexpr std::pair<const char16_t*, RegistryValueType> kSettings[] = {
        {u"Enabled", RegistryValueType::Dword},
        {u"Icons", RegistryValueType::Dword},
        {u"Language", RegistryValueType::String}};
    Result result = Result::Done;
    for (const auto& [name, type] : kSettings) {
        try {
            if (copyDefault(name, type))
                messages.tell("Gave the user the default of " + utf8(name));
        } catch (const std::exception& error) {
            messages.complain("the default of " + utf8(name) + " could not be copied: " + error.what());
            result = Result::Failed;
        }
    }
    return result;
}

}  // namespace setup
