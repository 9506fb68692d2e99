// What the shell does for us: starting programs and documents, well-known folders, the Recycle Bin, drives,
// and the list of files that a drop or a selection carries.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/drop_block.h"
#include "platform/error.h"
#include "platform/process.h"

// What the SDK's HWND points to.
struct HWND__;

namespace platform {

// A window of somebody else's, or none (HWND).
using WindowRef = HWND__*;

inline constexpr std::int32_t kShowNormal = 1;
inline constexpr std::int64_t kLargestShellFailure = 32;

// ShellExecuteW. `owner` may be none, `folder` is the working folder or nullptr for none. The answer is the
// call's own value: greater than kLargestShellFailure for success, otherwise an error number.
[[nodiscard]] std::int64_t shellExecute(WindowRef owner, const std::u16string& verb,
                                        const std::u16string& file, const std::u16string& parameters,
                                        const char16_t* folder, std::int32_t show);

inline constexpr std::uint32_t kMaskNoCloseProcess = 0x40;
inline constexpr std::uint32_t kMaskNoAsync = 0x100;
inline constexpr std::uint32_t kMaskNoUi = 0x400;

struct ShellExecuteRequest {
    std::u16string verb;
    std::u16string file;
    std::u16string parameters;  // empty: none are passed (a null pointer)
    std::uint32_t mask = 0;
    std::int32_t show = kShowNormal;
};

// ShellExecuteExW. `process` becomes whatever process handle the call gave back, also when it failed; none
// when it gave none.
Status shellExecuteEx(const ShellExecuteRequest& request, ProcessHandle& process);

inline constexpr int kCsidlAppData = 26;
inline constexpr int kCsidlLocalAppData = 28;
inline constexpr int kCsidlCommonAppData = 35;

// SHGetFolderPathW for the current user: the folder, without a separator at its end; nothing on failure.
[[nodiscard]] std::optional<std::u16string> folderPath(int csidl);

// SHQueryRecycleBinW: how much lies in the Recycle Bin of the drive that `root` names, or, when `root` is
// empty, in all of them. The code of a failure is that of the call's HRESULT. A failure leaves both
// untouched.
Status queryRecycleBin(const std::u16string& root, std::int64_t& bytes, std::int64_t& items);

// PathGetDriveNumberW: 0 for A: to 25 for Z:, -1 for a path that names no drive. Skips a leading "\\?\".
int driveNumber(const std::u16string& path);

// GetWindowsDirectoryW: the folder's length without its terminating zero; when `size` (in characters) is too
// small, the size needed with it, and the buffer's content is unspecified; 0 on failure.
[[nodiscard]] std::uint32_t windowsDirectory(char16_t* buffer, std::uint32_t size);

// SHChangeNotify(SHCNE_ASSOCCHANGED): tells the shell that handlers and file types have changed.
void notifyAssociationsChanged();

// The paths of a CF_HDROP memory block (platform/drop_block.h), which DragQueryFileW finds too, but for each
// of them it walks the block from its start; here the block is walked once. `global` is the memory handle of
// a storage medium and stays the caller's; GlobalLock, GlobalSize. One that cannot be locked, or holds no
// list, gives a list without items.
DropList readDropList(void* global);

}  // namespace platform
