// Which modules the process has loaded and which files they came from.
#pragma once

#include <string>

// What the SDK's HINSTANCE and HMODULE point to.
struct HINSTANCE__;

namespace platform {

// A loaded module (HINSTANCE, HMODULE).
using ModuleRef = HINSTANCE__*;

// GetModuleFileNameW: the full path of the file that `module` was loaded from; nullptr means the running
// program. However long the path is, it comes whole; empty on failure.
std::u16string moduleFileName(ModuleRef module);

}  // namespace platform
