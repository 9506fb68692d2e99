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

// Approves the three classes, attaches them to files and folders, drives and the Recycle Bin, and names
// "nmshell.dll" in the application folder as their server. False when any key or value could not be written;
// then none of them is left.
bool RegisterExtension();

// Removes all of that and the user's settings, going on past every failure.
void UnregisterExtension();

}  // namespace nmshell
