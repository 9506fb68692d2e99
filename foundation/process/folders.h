// The standard folders.
#pragma once

#include <cstdint>
#include <string>

namespace owlkit {

// A role, not a place: some roles share a folder.
enum FolderCode : std::uint32_t {
    kFolderCurrent = 0,      // the process's current folder or, when it cannot be had, the application folder
    kFolderApplication = 1,  // see recordApplicationFolder()
    kFolderTemporary = 2,    // GetTempPathW
    kFolderTemporaryFiles = 3,   // the same
    kFolderUserProfile = 4,      // the environment variable USERPROFILE
    kFolderRoamingData = 5,      // CSIDL_APPDATA
    kFolderRoamingSettings = 6,  // the same
    kFolderLocalData = 7,        // CSIDL_LOCAL_APPDATA
    kFolderCommonData = 8,       // CSIDL_COMMON_APPDATA
    kFolderCommonSettings = 9,   // the same
};

// Sets `folder` to the full path of a standard folder, a separator at its end. False, and an empty text, for
// a code above 9, a folder that the system does not name, and one that does not exist as a folder.
bool getFolder(std::uint32_t code, std::u16string& folder);

// Fixes the application folder for the process, with or without a separator at its end. While none is
// recorded, or an empty one, it is the folder of the running program.
void recordApplicationFolder(const std::u16string& folder);

}  // namespace owlkit
