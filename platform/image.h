// Files that hold a module: whether the system can load them, and which version they are.
#pragma once

#include <string>

#include "platform/error.h"

namespace platform {

inline constexpr Status kErrorModuleNotFound{126};  // one that the module needs, when the file is there
inline constexpr Status kErrorBadExeFormat{193};
inline constexpr Status kErrorModuleInitFailed{1114};

// LoadLibraryExW, and FreeLibrary again: the error that loading the module at `file` into this process gives.
// `file` must be a full path, as anything else would be searched for: kErrorBadPathName without it. What the
// module needs is taken from its own folder and the system's.
Status loadError(const std::u16string& file);

// The same without running any of it: LoadLibraryExW maps the file as data, and its headers say whether it is
// a DLL for this processor, kErrorBadExeFormat when not. What it needs is not looked for.
Status headerError(const std::u16string& file);

// GetFileVersionInfoW: the four numbers of the file's version with points between, such as "4.0.3.0"; empty
// when it has none.
std::u16string fileVersion(const std::u16string& file);

}  // namespace platform
