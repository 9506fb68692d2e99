// The paths that a data object of the shell carries.
#pragma once

#include <cstdint>

#include "foundation/path/path_list.h"
#include "platform/com.h"

namespace nmshell {

// Asks `data` for CF_HDROP in global memory, fills `paths` with the dropped paths in their order and returns
// how many items the drop list holds: one that cannot be read is counted and not among the paths. No data
// object, or one that refuses: 0 and no paths. The medium is released in every case. Follows
// IDataObject::GetData and DragQueryFileW.
std::uint32_t CollectDroppedPaths(IDataObject* data, owlkit::PathList& paths);

}  // namespace nmshell
