// Entering the extension in the machine's registry, and taking it out again. Both write under
// HKEY_LOCAL_MACHINE and so need an elevated process. Neither throws.
#pragma once

#include <string>
#include <vector>

namespace nmshell {

// One text value under HKEY_LOCAL_MACHINE that registering writes; an empty name is the key's default value.
struct RegistrationEntry {
    std::u16string path;
    std::u16string name;
    std::u16string text;

    // Whether `text` is the module that serves a class.
    bool isServer() const;
};

// All of them, in the order in which they are written: the three approvals, the three handlers, and a server
// and its threading model for each class. `modulePath` is the full name of the module.
std::vector<RegistrationEntry> registrationEntries(const std::u16string& modulePath);

// How registering ended.
enum class RegistrationResult {
    Registered,
    NothingChanged,  // it failed before a key was made, and what was there before is there as it was
    Removed,         // it failed later and was unregistered, an older registration included
    Incomplete,      // it failed before a key was made, and an approval could not be put back
};

// Approves the three classes, attaches them to files and folders, drives and the Recycle Bin, and names
// "nmshell.dll" in the application folder as their server. When an approval cannot be written, those that
// this run wrote are put back; when a later key or value cannot be written, UnregisterExtension takes all of
// it away.
[[nodiscard]] RegistrationResult tryRegisterExtension();

// The same; whether everything was written.
[[nodiscard]] bool RegisterExtension();

// Removes all of that and the user's settings, going on past every failure.
void UnregisterExtension();

}  // namespace nmshell
