#include "platform/com.h"

#include <filesystem>
#include <system_error>

#include "tools/interlang/file_access.h"

namespace translators {
namespace {

constexpr DWORD kLongestPath = 32768;

const wchar_t* native(const std::u16string& path) {
    return reinterpret_cast<const wchar_t*>(path.c_str());
}

}  // namespace

// The standard library knows no links here, and ReplaceFileW would put the new file in place of one.
std::u16string withoutLinks(const std::u16string& path) {
    const DWORD attributes = ::GetFileAttributesW(native(path));
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return path;
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = ::CreateFileW(native(path), 0, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return path;
    std::u16string name(kLongestPath, u'\0');
    const DWORD length = ::GetFinalPathNameByHandleW(file, reinterpret_cast<wchar_t*>(name.data()),
                                                     kLongestPath, FILE_NAME_NORMALIZED);
    ::CloseHandle(file);
    name.resize(length < kLongestPath ? length : 0);
    return name.empty() ? path : name;
}

// ReplaceFileW takes over attributes, access list and the time of creation. Wine's needs to be told the
// folder.
bool replaceFile(const std::u16string& path, const std::u16string& fresh) {
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(path, error);
    return ::ReplaceFileW(whole.c_str(), native(fresh), nullptr, 0, nullptr, nullptr) != 0;
}

}  // namespace translators
