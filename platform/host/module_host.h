// What the module stand-in answers.
#pragma once

#include <string>

#include "platform/module.h"

namespace platform::host {

// A module that stands for `object`, by its address.
inline ModuleRef moduleAt(void* object) {
    return reinterpret_cast<ModuleRef>(object);
}

// moduleFileName(module) answers `path` from now on; nullptr stands for the running program, which otherwise
// has its real path. Every other module has none.
void setModuleFileName(ModuleRef module, const std::u16string& path);

// Whether setModuleFileName was told of `module`, the running program apart.
bool hasModule(ModuleRef module);

// Forgets what was set.
void resetModules();

}  // namespace platform::host
