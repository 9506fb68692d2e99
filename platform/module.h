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

// Has `end` called after DllMain when this DLL is unloaded, though not at the end of the process. It keeps
// one, and cannot fail: what registers a destructor needs memory, and without it nobody would end the module.
// Natively nothing is unloaded before the end of the process, and then `end` is called.
void atUnload(void (*end)() noexcept);

}  // namespace platform
