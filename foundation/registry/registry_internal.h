// What the files of RegistryKey have in common.
#pragma once

#include <cstddef>
#include <string>

#include "foundation/errors.h"
#include "foundation/registry/registry_types.h"
#include "platform/registry.h"

namespace owlkit {

inline platform::KeyRef rootHandle(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::ClassesRoot:
            return platform::predefinedKey(platform::kHkeyClassesRoot);
        case RegistryRoot::CurrentUser:
            return platform::predefinedKey(platform::kHkeyCurrentUser);
        case RegistryRoot::LocalMachine:
            return platform::predefinedKey(platform::kHkeyLocalMachine);
        case RegistryRoot::Users:
            return platform::predefinedKey(platform::kHkeyUsers);
        case RegistryRoot::CurrentConfig:
            return platform::predefinedKey(platform::kHkeyCurrentConfig);
        case RegistryRoot::None:
            break;
    }
    return nullptr;
}

// The type that a platform's code stands for.
RegistryValueType valueTypeOf(std::uint32_t type);

// Throws for a path that is too long.
inline void checkPath(const std::u16string& path) {
    constexpr std::size_t kPathLimit = 255;  // a path is shorter than this
    if (path.size() >= kPathLimit)
        throwInvalidArgument();
}

}  // namespace owlkit
