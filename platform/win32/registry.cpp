#include "platform/registry.h"

#include "platform/one_name.h"
#include "platform/win32/registry_arguments.h"

namespace platform {

void RegistryTraits::close(Type key) noexcept {
    ::RegCloseKey(handle(key));
}

ErrorCode openKey(void* parent, const std::u16string& path, std::uint32_t options, std::uint32_t access,
                  RegistryHandle& key) {
    if (!isOneName(path))
        return kErrorInvalidName;
    HKEY opened = nullptr;
    const ErrorCode error = code(::RegOpenKeyExW(handle(parent), wide(path), options, access, &opened));
    if (error == kSuccess)
        key.reset(opened);
    return error;
}

ErrorCode queryValue(void* key, const std::u16string& name, std::uint32_t* type, void* data,
                     std::uint32_t* size) {
    if (!isOneName(name))
        return kErrorInvalidName;
    return code(::RegQueryValueExW(handle(key), wide(name), nullptr, dword(type), static_cast<BYTE*>(data),
                                   dword(size)));
}

}  // namespace platform
