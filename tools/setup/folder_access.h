// Who besides administrators could change what the machine's shell loads from a folder.
#pragma once

#include <string>
#include <vector>

#include "platform/security.h"

namespace setup {

// An account that may change something at `path`; empty where the access list could not be read.
struct Intruder {
    std::u16string path;
    std::u16string account;
};

// Asks for the folder itself, the files in it and in its folder "langs", and every folder above it, which
// could be renamed with all that is in it. Links are followed first: see behindLink. Trusted are the system,
// administrators, the installer service, the owner of what is made later, and the account that this process
// runs as. An owner counts as one who may change access. Entries that deny are not subtracted.
std::vector<Intruder> intruders(const std::u16string& folder);

// Where the existing folder really is, when its name, the case of A to Z and a separator at its end aside, is
// not its full one: a link is on the way, or a short name. Empty when it is, or when that cannot be told.
std::u16string behindLink(const std::u16string& folder);

// Whether the folder lies in the system's own folder for programs.
bool liesInProgramFiles(const std::u16string& folder);

// "BUILTIN\Users can change C:\Tools"
std::string describe(const Intruder& intruder);

}  // namespace setup
