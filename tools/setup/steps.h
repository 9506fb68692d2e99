// What the setup does to a machine, for the program and for the installer's package alike.
#pragma once

#include <string>

#include "tools/setup/messages.h"

namespace setup {

// Exit codes of the program.
enum class Result : int {
    Done = 0,
    Incomplete = 1,  // status: the menu does not appear, or something is missing or different
    WrongUsage = 2,
    NotElevated = 3,  // administrator rights are needed
    NoModule = 4,     // nmshell.dll is not where it is looked for
    Failed = 5,
    UnusableModule = 6,  // nmshell.dll is there and cannot be loaded
    UnsafeFolder = 7,    // users can change what the shell would load
    Unchanged = 8,       // the registry could not be written, and an older registration is as it was
};

// Each says in `messages` what came of it. `folder`, with a separator at its end, is where nmshell.dll lies.

// How a module is tried before it is registered.
enum class Trial {
    Load,     // as the shell will, its code running in this process
    Headers,  // by what its file says of itself: for the installer, which runs as the system
};

// Registers nmshell.dll, if it can be loaded, and warns when users can change it.
Result registerModule(const std::u16string& folder, Trial trial, Messages& messages);

// Removes the registration and the current user's settings.
Result unregisterModule(Messages& messages);

// Refuses a folder that users can change, unless it lies in Program Files: there it is a warning. One that is
// reached through a link is refused, since whoever owns the link can lead it elsewhere later. It need not
// hold anything yet.
Result checkFolder(const std::u16string& folder, Messages& messages);

// Gives the current user those of the machine's defaults for which there is no setting of that user yet.
Result applyDefaults(Messages& messages);

}  // namespace setup
