#include "platform/com.h"

#include "tools/interlang/file_access.h"

namespace translators {
namespace {

const wchar_t* native(const std::u16string& path) {
    return reinterpret_cast<const wchar_t*>(path.c_str());
}

}  // namespace

// ReplaceFileW takes over attributes, access list and the time of creation.
bool replaceFile(const std::u16string& path, const std::u16string& fresh) {
    return ::ReplaceFileW(native(path), native(fresh), nullptr, 0, nullptr, nullptr) != 0;
}

}  // namespace translators
