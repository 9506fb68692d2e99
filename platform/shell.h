// What the shell does for us: starting programs and documents, well-known folders, the Recycle Bin, drives,
// and the list of files that a drop or a selection carries.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/process.h"

namespace platform {

inline constexpr std::int32_t kShowNormal = 1;

// ShellExecuteW. `owner` is a window handle or nullptr, `folder` the working folder or nullptr for none. The
// answer is the call's own value: greater than 32 for success, otherwise an error number.
std::int64_t shellExecute(void* owner, const std::u16string& verb, const std::u16string& file,
                          const std::u16string& parameters, const char16_t* folder, std::int32_t show);

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
bool shellExecuteEx(const ShellExecuteRequest& request, ProcessHandle& process);

inline constexpr int kCsidlAppData = 26;
inline constexpr int kCsidlLocalAppData = 28;
inline constexpr int kCsidlCommonAppData = 35;

// SHGetFolderPathW for the current user: the folder, without a separator at its end; nothing on failure.
std::optional<std::u16string> folderPath(int csidl);

// SHQueryRecycleBinW: how much lies in the Recycle Bin of the drive that `root` names, or, when `root` is
// empty, in all of them.
bool queryRecycleBin(const std::u16string& root, std::int64_t& bytes, std::int64_t& items);

// PathGetDriveNumberW: 0 for A: to 25 for Z:, -1 for a path that names no drive. Skips a leading "\\?\".
int driveNumber(const std::u16string& path);

// GetWindowsDirectoryW: the folder's length without its terminating zero; when `size` (in characters) is too
// small, the size needed with it, and the buffer's content is unspecified; 0 on failure.
std::uint32_t windowsDirectory(char16_t* buffer, std::uint32_t size);

// SHChangeNotify(SHCNE_ASSOCCHANGED): tells the shell that handlers and file types have changed.
void notifyAssociationsChanged();

// The paths of a CF_HDROP memory block, with the answers of DragQueryFileW. That function walks the block
// from its start on every call; here the block is walked once, so that reading every path is linear in the
// block's size. Nothing outside the block is ever read: a last path that lacks its terminating zero is
// counted but cannot be read.
class DropList {
  public:
    // `global` is the memory handle of a storage medium. The caller keeps owning it and releases it only
    // after the list is gone. A handle that cannot be locked, or a block that holds no list, gives a list
    // without items.
    static DropList open(void* global);

    DropList(DropList&& other) noexcept;
    DropList& operator=(DropList&& other) noexcept;
    ~DropList();

    // The number of items, those that cannot be read included.
    std::uint32_t count() const;

    // The item's length in characters, without a terminating zero; 0 when there is no such item or it cannot
    // be read.
    std::uint32_t itemLength(std::uint32_t index) const;

    // Copies at most `room` - 1 characters of the item and a terminating zero. Returns the number of
    // characters copied without the zero; 0 when there is no such item, it cannot be read or `room` is 0.
    std::uint32_t copyItem(std::uint32_t index, char16_t* buffer, std::uint32_t room) const;

  private:
    struct Block;
    explicit DropList(std::unique_ptr<Block> block) noexcept;

    std::unique_ptr<Block> block_;  // none in a list that was moved from
};

}  // namespace platform
