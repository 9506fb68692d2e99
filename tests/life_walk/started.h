// What an entry of the menu may start.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/host/shell_host.h"

namespace nmshell {

// The selection, and what a start must name besides it.
struct Selected {
    std::vector<std::u16string> paths;
    std::u16string folder;  // of the module
};

inline constexpr std::uint32_t kOffsets = 15;

// The paths as they are handed over, each followed by a zero.
std::u16string pathList(const std::vector<std::u16string>& paths);

// Checks what the entry at `offset` started, down to the bytes that are handed over: it is the entry's own
// command or page and no other, names selected paths and no others, each whole and in order, and has the
// rights that are due; `volumeOpens` says whether drive D, the only one there is, can be opened. Reads and so
// deletes the hand-over file. What is missing, in bits of Difference.
std::uint32_t checkStart(std::uint32_t offset, const platform::host::ShellStart& start,
                         const Selected& selected, bool volumeOpens);

}  // namespace nmshell
