// The standard folders.
#pragma once

#include <cstdint>
#include <string>

namespace owlkit {

// A role, not a place: some roles share a folder.
enum class FolderCode : std::uint32_t {
    // The process's current folder or, when it cannot be had, the application folder.
    Current = 0,
    Application = 1,      // see recordApplicationFolder()
    Temporary = 2,        // GetTempPathW
    TemporaryFiles = 3,   // the same
    UserProfile = 4,      // the environment variable USERPROFILE
    RoamingData = 5,      // CSIDL_APPDATA
    RoamingSettings = 6,  // the same
    LocalData = 7,        // CSIDL_LOCAL_APPDATA
    CommonData = 8,       // CSIDL_COMMON_APPDATA
    CommonSettings = 9,   // the same
};

// Sets `folder` to the full path of a standard folder, a separator at its end. False, and an empty text, for
// any other code, a folder that the system does not name, and one that does not exist as a folder.
[[nodiscard]] bool getFolder(FolderCode code, std::u16string& folder);

// Fixes the application folder for the process, with or without a separator at its end. While none is
// recorded, or an empty one, it is the folder of the running program.
void recordApplicationFolder(const std::u16string& folder);

}  // namespace owlkit
