// What the module stand-in answers.
#pragma once

#include <string>

namespace platform {

// moduleFileName(module) answers `path` from now on; nullptr stands for the running program, which otherwise
// has its real path. Every other module has none.
void setModuleFileName(void* module, const std::u16string& path);

// Whether setModuleFileName was told of `module`, the running program apart.
bool hasModule(void* module);

// Forgets what was set.
void resetModules();

}  // namespace platform
