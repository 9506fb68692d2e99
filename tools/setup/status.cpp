#include "tools/setup/status.h"

#include "foundation/registry/registry_key.h"

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

std::u16string registeredModule() {
    for (const RegistrationEntry& entry : registrationEntries({}))
        if (entry.isServer())
            return RegistryKey::readRawStringOr(RegistryRoot::LocalMachine, entry.path, entry.name, {});
    return {};
}

}  // namespace nmshell
