// Which modules the process has loaded and which files they came from.
#pragma once

#include <string>

namespace platform {

// GetModuleFileNameW: the full path of the file that `module` was loaded from; nullptr means the running
// program. However long the path is, it comes whole; empty on failure.
std::u16string moduleFileName(void* module);

}  // namespace platform
