// What was right-clicked: the kind of object, how many, and their full paths.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/com.h"

namespace nmshell {

enum class SelectionKind : std::uint32_t { Files = 0, Drives = 1, RecycleBin = 2 };

// `paths` holds every path that could be read, each followed by its own zero character. `count` is what the
// shell said it dropped, so it can be larger than the number of paths.
struct Selection {
    SelectionKind kind = SelectionKind::Files;
    std::uint32_t count = 0;
    std::u16string paths;
};

// Asks `data` for CF_HDROP in global memory, fills `paths` with the dropped paths in their order, each
// followed by a zero character, and returns how many items the drop list holds. No data object, or one that
// refuses: 0 and no paths. The medium is released in every case. Follows IDataObject::GetData and
// DragQueryFileW.
std::uint32_t CollectDroppedPaths(IDataObject* data, std::u16string& paths);

// The text of a path list up to its first zero character.
std::u16string firstPath(std::u16string_view paths);

enum class PathType : std::uint32_t { Unreadable = 0, File = 1, Folder = 2 };

// From the attributes of `path` (GetFileAttributesW).
PathType pathType(const std::u16string& path);

// The drive that holds the Windows folder, asked of the system once.
class SystemDrive {
  public:
    // 0 for A: to 25 for Z:, or -1 when the Windows folder cannot be had. GetWindowsDirectoryW,
    // PathGetDriveNumberW.
    int number();

    // Whether `path` lies on the system drive. A path without a drive counts as lying there.
    bool holds(const std::u16string& path);

  private:
    static constexpr int kNotAsked = -2;
    std::atomic<int> number_ = kNotAsked;  // two threads that ask at once get the same answer
};

}  // namespace nmshell
