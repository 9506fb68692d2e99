// The table of commands: what each menu entry is called, and what choosing it does. Menu construction, help
// texts and dispatch all read it.
#pragma once

#include <cstdint>
#include <string_view>

namespace nmshell {

// Offsets that are added to the first identifier which the shell grants. Shell and extension share them for
// the life of a menu. Unscoped: the code counts through them, adds them to identifiers and keeps them beside
// kNoCommand, always as the numbers that COM hands over; only the table and the menu call them by name.
enum CommandOffset : std::uint32_t {
    kWipeFiles = 0,
    kWipeDrive = 1,
    kCleanDrive = 2,
    kUserTrashDrive = 3,
    kUserTrashAll = 4,
    kAdminTrashDrive = 5,
    kAdminTrashAll = 6,
    kStandalone = 7,
    kWipeSwap = 8,
    kOptions = 9,
    kHelp = 10,
    kUpdate = 11,
    kRegister = 12,
    kUpgrade = 13,
    kAbout = 14,
};
inline constexpr std::uint32_t kCommandCount = 15;

enum class CommandAction { StartApplication, OpenPage };
enum class Elevation { Never, Always, WhenVolumeIsClosed };
enum class RequestData { None, PathList };

struct Command {
    std::string_view menuKey;  // empty: in no menu, or chosen by the selection (kWipeFiles)
    std::string_view helpKey;
    int bitmap;  // resource identifier, or kNoBitmap
    CommandAction action;
    std::uint32_t number;  // what the application is told; 0 tells it nothing
    Elevation elevation;
    RequestData data;
    std::u16string_view page;  // path on the web site
};

inline constexpr int kNoBitmap = -1;

// The row of `offset`, which must be below kCommandCount.
const Command& command(std::uint32_t offset);

}  // namespace nmshell
