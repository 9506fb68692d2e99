// What the system says about a selection: all that the menu depends on and the selection does not hold.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "contextmenu/selection.h"
#include "foundation/path/path.h"
#include "foundation/process/elevation.h"

namespace nmshell {

enum class RecycleBinState { Unknown = -1, Empty = 0, HoldsItems = 1 };

// The recycle bin below `root` (such as u"C:\\"), or of all drives for the empty root. SHQueryRecycleBinW.
RecycleBinState QueryRecycleBinState(const std::u16string& root);

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

// Only the facts that the selection's kind needs are asked for; the others stay as they are here.
struct MenuFacts {
    owlkit::PathType firstPathType = owlkit::PathType::Unreadable;       // one file or folder
    bool firstPathOnSystemDrive = true;                                  // drives
    RecycleBinState recycleBin = RecycleBinState::Unknown;               // one drive, or the Recycle Bin
    owlkit::ElevationState elevation = owlkit::ElevationState::Unknown;  // drives and the Recycle Bin
};
MenuFacts gatherFacts(const Selection& selection, SystemDrive& systemDrive);

}  // namespace nmshell
