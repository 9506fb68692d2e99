// What of the extension is there, and whether the current user's menu appears.
#pragma once

#include <string>
#include <vector>

#include "shellext/registration.h"
#include "tools/common/diagnosis.h"
#include "tools/setup/folder_access.h"

namespace setup {

enum class EntryState { Present, Missing, Different };

struct EntryStatus {
    nmshell::RegistrationEntry entry;
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

// What an error of platform::loadError or headerError says of a file that was to be loaded as a module; empty
// for success.
std::string describeLoadError(platform::Status error);

// A setting of the current user.
struct Setting {
    const char16_t* name;
    std::u16string value;  // in force: "on", "off" or a language; empty: the regional format's language
    bool stored = false;   // whether there is a value of that name; with another type it is not in force
    bool usable = true;    // whether that value has the setting's type
};

struct Status {
    std::vector<EntryStatus> entries;
    std::u16string module;    // the registered one; empty when there is none
    std::string moduleFault;  // why it cannot serve; empty when it can
    std::u16string version;   // of that file
    std::vector<Intruder> intruders;
    std::vector<Setting> settings;
    tools::Languages languages;

    bool menuAppears = false;
    std::string verdict;  // one line
};

// `expectedModule` is the file that should be registered.
Status takeStatus(const std::u16string& expectedModule);

std::string toText(const Status& status);
std::string toJson(const Status& status);

}  // namespace setup
