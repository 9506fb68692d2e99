// Paths that the system takes only under a prefix.
#pragma once

#include <string>

namespace platform {

// A path as the file functions of Windows take it: an absolute one of MAX_PATH code units or more under the
// prefix "\\?\", a share's under "\\?\UNC\". Under a prefix a path is taken literally, so it is first
// brought into the form that Windows gives a short one (GetFullPathNameW: separators, "." and ".."). Every
// other path, and one that names a device or has a prefix already, as it is, and without needing memory.
class SystemPath {
  public:
    explicit SystemPath(const std::u16string& path);  // kept by reference

    const std::u16string& text() const { return long_.empty() ? path_ : long_; }

  private:
    const std::u16string& path_;
    std::u16string long_;
};

}  // namespace platform
