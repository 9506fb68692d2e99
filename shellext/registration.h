// Entering the extension in the machine's registry, and taking it out again. Both write under
// HKEY_LOCAL_MACHINE and so need an elevated process. Neither throws.
#pragma once

namespace nmshell {

// Approves the three classes, attaches them to files and folders, drives and the Recycle Bin, and names
// "nmshell.dll" in the application folder as their server. False when any key or value could not be written;
// then none of them is left.
bool RegisterExtension();

// Removes all of that and the user's settings, going on past every failure.
void UnregisterExtension();

}  // namespace nmshell
