#include "tools/setup/status.h"

#include "foundation/registry/registry_key.h"
#include "shellext/identifiers.h"

namespace nmshell {

using owlkit::RegistryKey;
using owlkit::RegistryRoot;

std::vector<EntryStatus> registrationStatus(const std::u16string& modulePath) {
    std::vector<EntryStatus> result;
    for (RegistrationEntry& entry : registrationEntries(modulePath)) {
        EntryStatus status;
        RegistryKey key;
        if (key.open(RegistryRoot::LocalMachine, entry.path, owlkit::RegistryMode::ReadOnly) &&
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
    for (const RegistrationEntry& entry : registrationEntries({})) {
        // The list of approvals is the system's; everything else is a key of ours.
        const bool there = entry.path == kApprovalPath ? key.open(RegistryRoot::LocalMachine, entry.path,
                                                                  owlkit::RegistryMode::ReadOnly) &&
                                                             key.valueExists(entry.name)
                                                       : key.exists(RegistryRoot::LocalMachine, entry.path);
        if (there)
            left.push_back(u"HKEY_LOCAL_MACHINE\\" + entry.path);
    }
    if (key.exists(RegistryRoot::CurrentUser, std::u16string(kSettingsPath)))
        left.push_back(u"HKEY_CURRENT_USER\\" + std::u16string(kSettingsPath));
    return left;
}

std::u16string registeredModule() {
    for (const RegistrationEntry& entry : registrationEntries({}))
        if (entry.isServer())
            return RegistryKey::readRawStringOr(RegistryRoot::LocalMachine, entry.path, entry.name, {});
    return {};
}

}  // namespace nmshell
