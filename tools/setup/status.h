// What of the registration is there.
#pragma once

#include <string>
#include <vector>

#include "shellext/registration.h"

namespace nmshell {

enum class EntryState { Present, Missing, Different };

struct EntryStatus {
    RegistrationEntry entry;
    EntryState state = EntryState::Missing;
    std::u16string found;  // the text that is there instead, when different
};

// Every key and value that registering writes, compared with the machine's registry. `modulePath` is where
// the module is expected to be registered.
std::vector<EntryStatus> registrationStatus(const std::u16string& modulePath);

// What of the registration and of the current user's settings is still there, whatever it holds; empty after
// a complete removal.
std::vector<std::u16string> remainingKeys();

// The server that the file-system class is registered with; empty when it has none.
std::u16string registeredModule();

}  // namespace nmshell
