// Names that the platform takes whole.
#pragma once

#include <string>

namespace platform {

// Whether `name` is one name to the platform: it ends names at their first zero character, so that the first
// path of a path list would be taken for the list. Functions that take names refuse what is not.
inline bool isOneName(const std::u16string& name) {
    return name.find(u'\0') == std::u16string::npos;
}

}  // namespace platform
