#include "tools/setup/status.h"

#include <algorithm>

#include "comserver/identifiers.h"
#include "comserver/settings.h"
#include "foundation/path/path.h"
#include "foundation/registry/registry_key.h"
#include "platform/image.h"
#include "tools/common/text.h"

namespace setup {
namespace {

using nmshell::RegistrationEntry;
using owlkit::RegistryKey;
using owlkit::RegistryMode;
using owlkit::RegistryRoot;
using owlkit::RegistryValueType;
using tools::utf8;

Setting readSetting(const char16_t* name, RegistryValueType type) {
    Setting setting{name, {}};
    RegistryKey key;
    setting.stored =
        key.open(RegistryRoot::CurrentUser, std::u16string(nmshell::kSettingsPath), RegistryMode::ReadOnly) &&
        key.valueExists(name);
    setting.usable = !setting.stored || key.valueType(name) == type;
    return setting;
}

// Off only for the number 0.
Setting readFlag(const char16_t* name) {
    Setting flag = readSetting(name, RegistryValueType::Dword);
    const bool off = flag.stored && flag.usable &&
                     RegistryKey::readDwordOr(RegistryRoot::CurrentUser,
                                              std::u16string(nmshell::kSettingsPath), name, 1) == 0;
    flag.value = off ? u"off" : u"on";
    return flag;
}

std::vector<Setting> readSettings() {
    Setting language = readSetting(u"Language", RegistryValueType::String);
    language.value = nmshell::GetLanguageSetting();
    return {readFlag(u"Enabled"), readFlag(u"Icons"), std::move(language)};
}

// Why no menu appears; empty when it does.
std::string whyNoMenu(const Status& status) {
    if (status.module.empty())
        return "the extension is not registered";
    if (!status.moduleFault.empty())
        return utf8(status.module) + " cannot be loaded: " + status.moduleFault;
    for (const auto kind :
         {nmshell::SelectionKind::Files, nmshell::SelectionKind::Drives, nmshell::SelectionKind::RecycleBin})
        if (std::string reason = tools::whyUnavailable(kind, true); !reason.empty())
            return reason;
    if (!status.languages.failure.empty())
        return tools::whyNoTexts(status.languages);
    const auto lost =
        std::count_if(status.entries.begin(), status.entries.end(),
                      [](const EntryStatus& each) { return each.state != EntryState::Present; });
    return lost == 0 ? std::string() : std::to_string(lost) + " registry values are missing or different";
}

}  // namespace

std::vector<EntryStatus> registrationStatus(const std::u16string& modulePath) {
    std::vector<EntryStatus> result;
    for (RegistrationEntry& entry : nmshell::registrationEntries(modulePath)) {
        EntryStatus status;
        RegistryKey key;
        if (key.open(RegistryRoot::LocalMachine, entry.path, RegistryMode::ReadOnly) &&
            key.valueExists(entry.name)) {
            status.found =
                RegistryKey::readRawStringOr(RegistryRoot::LocalMachine, entry.path, entry.name, {});
            status.state = status.found == entry.text ? EntryState::Present : EntryState::Different;
        }
        status.entry = std::move(entry);
        result.push_back(std::move(status));
    }
    return result;
}

std::vector<std::u16string> remainingKeys() {
    std::vector<std::u16string> left;
    RegistryKey key;
    for (const RegistrationEntry& entry : nmshell::registrationEntries({})) {
        // The list of approvals is the system's; everything else is a key of ours.
        const bool there = entry.path == nmshell::kApprovalPath
                               ? key.open(RegistryRoot::LocalMachine, entry.path, RegistryMode::ReadOnly) &&
                                     key.valueExists(entry.name)
                               : key.exists(RegistryRoot::LocalMachine, entry.path);
        if (there)
            left.push_back(u"HKEY_LOCAL_MACHINE\\" + entry.path);
    }
    if (key.exists(RegistryRoot::CurrentUser, std::u16string(nmshell::kSettingsPath)))
        left.push_back(u"HKEY_CURRENT_USER\\" + std::u16string(nmshell::kSettingsPath));
    return left;
}

std::u16string registeredModule() {
    for (const RegistrationEntry& entry : nmshell::registrationEntries({}))
        if (entry.isServer())
            return RegistryKey::readRawStringOr(RegistryRoot::LocalMachine, entry.path, entry.name, {});
    return {};
}

std::string describeLoadError(platform::Status status) {
    switch (status.code) {
        case platform::kSuccess.code:
            return {};
        case platform::kErrorBadExeFormat.code:
            return "it is no 64-bit DLL for this processor (error 193)";
        case platform::kErrorBadPathName.code:
            return "its path is not a full one";
        case platform::kErrorModuleNotFound.code:
            return "a DLL that it needs is missing (error 126)";
        case platform::kErrorModuleInitFailed.code:
            return "it refused to start (error 1114)";
        default:
            return "error " + std::to_string(status.code);
    }
}

Status takeStatus(const std::u16string& expectedModule) {
    Status status;
    status.entries = registrationStatus(expectedModule);
    status.module = registeredModule();
    if (!status.module.empty()) {
        status.moduleFault = owlkit::pathType(status.module) == owlkit::PathType::File
                                 ? describeLoadError(platform::loadError(status.module))
                                 : "there is no such file";
        status.version = platform::fileVersion(status.module);
        status.languages = tools::inspectLanguages(status.module);
        // The folder of the languages ends in "langs" and a separator.
        const std::u16string_view folder = status.languages.folder;
        if (folder.size() > 6)
            status.intruders = intruders(std::u16string(folder.substr(0, folder.size() - 6)));
    }
    status.settings = readSettings();
    const std::string reason = whyNoMenu(status);
    status.menuAppears = reason.empty();
    status.verdict = status.menuAppears ? "The menu appears, in " + utf8(status.languages.shownName) + " (" +
                                              utf8(status.languages.shown) + ")."
                                        : "The menu does not appear: " + reason;
    return status;
}

}  // namespace setup
