#include "platform/registry.h"

#include <type_traits>

#include "platform/one_name.h"
#include "platform/win32/registry_arguments.h"

namespace platform {

static_assert(kKeyQueryValue == KEY_QUERY_VALUE);
static_assert(kKeySetValue == KEY_SET_VALUE);
static_assert(kKeyCreateSubKey == KEY_CREATE_SUB_KEY);
static_assert(kKeyEnumerateSubKeys == KEY_ENUMERATE_SUB_KEYS);
static_assert(kKeyWow64_64Key == KEY_WOW64_64KEY);
static_assert(kKeyWow64_32Key == KEY_WOW64_32KEY);
static_assert(kKeyDelete == DELETE);
static_assert(kKeyRead == KEY_READ);
static_assert(kKeyWrite == KEY_WRITE);
static_assert(kKeyAllAccess == KEY_ALL_ACCESS);
static_assert(kRegNone == REG_NONE);
static_assert(kRegSz == REG_SZ);
static_assert(kRegExpandSz == REG_EXPAND_SZ);
static_assert(kRegBinary == REG_BINARY);
static_assert(kRegDword == REG_DWORD);
static_assert(kRegMultiSz == REG_MULTI_SZ);
static_assert(kRegQword == REG_QWORD);
static_assert(std::is_same_v<KeyRef, HKEY>);
// The predefined roots are casts and so no constants: registry_test.cpp compares them.

void RegistryTraits::close(Type key) noexcept {
    ::RegCloseKey(key);
}

Status openKey(KeyRef parent, const std::u16string& path, std::uint32_t options, std::uint32_t access,
               RegistryHandle& key) {
    if (!isOneName(path))
        return kErrorInvalidName;
    HKEY opened = nullptr;
    const Status error = status(::RegOpenKeyExW(parent, wide(path), options, access, &opened));
    if (error == kSuccess)
        key.reset(opened);
    return error;
}

Status queryValue(KeyRef key, const std::u16string& name, std::uint32_t* type, void* data,
                  std::uint32_t* size) {
    if (!isOneName(name))
        return kErrorInvalidName;
    return status(
        ::RegQueryValueExW(key, wide(name), nullptr, dword(type), static_cast<BYTE*>(data), dword(size)));
}

}  // namespace platform
