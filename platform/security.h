// Who owns files and folders, who may do what to them, and as whom this process runs. Accounts are security
// identifiers as text, such as "S-1-5-32-544" for the administrators.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/error.h"

namespace platform {

// Rights, by what they mean for folders.
inline constexpr std::uint32_t kRightAddFile = 0x2;       // for files: to write data
inline constexpr std::uint32_t kRightAddFolder = 0x4;     // for files: to append data
inline constexpr std::uint32_t kRightDeleteChild = 0x40;  // whatever lies in it
inline constexpr std::uint32_t kRightDelete = 0x10000;    // to rename it, too
inline constexpr std::uint32_t kRightChangeAccess = 0x40000;
inline constexpr std::uint32_t kRightChangeOwner = 0x80000;
inline constexpr std::uint32_t kRightGenericAll = 0x10000000;
inline constexpr std::uint32_t kRightGenericWrite = 0x40000000;

struct AccessEntry {
    std::u16string account;
    std::uint32_t rights = 0;
    bool inheritOnly = false;  // for what is made in the folder, not for the folder itself
};

struct AccessList {
    std::u16string owner;
    std::vector<AccessEntry> allowed;  // entries that deny are left out
};

// GetNamedSecurityInfoW: owner and discretionary list of a file or folder. A file without a list, which lets
// everybody do everything, has one entry that says so. On the host, the mode of the file, "others" being
// Everyone. `list` is unspecified on failure.
Status accessList(const std::u16string& path, AccessList& list);

// GetTokenInformation(TokenUser): the account that this process runs as; empty on failure.
std::u16string processAccount();

// LookupAccountSidW: a name for people, such as "BUILTIN\Users"; the identifier where there is none.
std::u16string accountName(const std::u16string& account);

// GetFinalPathNameByHandleW: the full path of an existing file or folder with no link in it; empty on
// failure.
std::u16string finalPath(const std::u16string& path);

}  // namespace platform
