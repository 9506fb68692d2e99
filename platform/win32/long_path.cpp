#include "platform/win32/long_path.h"

#include "platform/win32/win32_api.h"

namespace platform {
namespace {

bool isSeparator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

// "\\?\", "\\.\" in any separators, and "\??\".
bool hasPrefix(const std::u16string& path) {
    return path.starts_with(u"\\??\\") || (isSeparator(path[0]) && isSeparator(path[1]) &&
                                           (path[2] == u'?' || path[2] == u'.') && isSeparator(path[3]));
}

bool isAbsolute(const std::u16string& path) {
    return (isSeparator(path[0]) && isSeparator(path[1])) || (path[1] == u':' && isSeparator(path[2]));
}

// GetFullPathNameW; empty when it fails.
std::u16string fullPath(const std::u16string& path) {
    std::u16string full(path.size() + 1, u'\0');  // an absolute path does not grow by it
    const DWORD size = static_cast<DWORD>(full.size());
    const DWORD length = GetFullPathNameW(wide(path), size, wide(full.data()), nullptr);
    full.resize(length < size ? length : 0);
    return full;
}

}  // namespace

SystemPath::SystemPath(const std::u16string& path) : path_(path) {
    if (path.size() < MAX_PATH || hasPrefix(path) || !isAbsolute(path))
        return;
    const std::u16string full = fullPath(path);
    if (full.empty() || hasPrefix(full))  // a name such as "C:\...\NUL" may be a device's
        return;
    long_ = full.starts_with(u"\\\\") ? u"\\\\?\\UNC\\" + full.substr(2) : u"\\\\?\\" + full;
}

}  // namespace platform
