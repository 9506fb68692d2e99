// What was right-clicked: the kind of object, how many, and their full paths.
#pragma once

#include <cstdint>

#include "foundation/path/path_list.h"

namespace nmshell {

enum class SelectionKind : std::uint32_t { Files = 0, Drives = 1, RecycleBin = 2 };

// `paths` holds every path that could be read. `count` is what the shell said it dropped, so it can be larger
// than the number of paths.
struct Selection {
    SelectionKind kind = SelectionKind::Files;
    std::uint32_t count = 0;
    owlkit::PathList paths;
};

}  // namespace nmshell
