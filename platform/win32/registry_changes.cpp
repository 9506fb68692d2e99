// Changes to the registry and what a key contains. They stand apart so that a program that only reads values
// is linked without them.
#include "platform/registry.h"

#include "platform/one_name.h"
#include "platform/win32/registry_arguments.h"

namespace platform {
namespace {

using DeleteKeyExFunction = LSTATUS(WINAPI*)(HKEY, LPCWSTR, REGSAM, DWORD);

}  // namespace

Status createKey(KeyRef parent, const std::u16string& path, std::uint32_t options, std::uint32_t access,
                 RegistryHandle& key) {
    if (!isOneName(path))
        return kErrorInvalidName;
    HKEY created = nullptr;
    const Status error = status(
        ::RegCreateKeyExW(parent, wide(path), 0, nullptr, options, access, nullptr, &created, nullptr));
    if (error == kSuccess)
        key.reset(created);
    return error;
}

Status deleteKey(KeyRef parent, const std::u16string& path) {
    return isOneName(path) ? status(::RegDeleteKeyW(parent, wide(path))) : kErrorInvalidName;
}

std::optional<Status> deleteKeyEx(KeyRef parent, const std::u16string& path, std::uint32_t viewFlag) {
    const HMODULE module = ::GetModuleHandleW(L"kernel32");
    if (module == nullptr)
        return std::nullopt;
    // By way of void*: the compiler warns about casts between unlike function types.
    const auto function = reinterpret_cast<DeleteKeyExFunction>(
        reinterpret_cast<void*>(::GetProcAddress(module, "RegDeleteKeyExW")));
    if (function == nullptr)
        return std::nullopt;
    return isOneName(path) ? status(function(parent, wide(path), viewFlag, 0)) : kErrorInvalidName;
}

Status setValue(KeyRef key, const std::u16string& name, std::uint32_t type, const void* data,
                std::uint32_t size) {
    if (!isOneName(name))
        return kErrorInvalidName;
    return status(::RegSetValueExW(key, wide(name), 0, type, static_cast<const BYTE*>(data), size));
}

Status deleteValue(KeyRef key, const std::u16string& name) {
    return isOneName(name) ? status(::RegDeleteValueW(key, wide(name))) : kErrorInvalidName;
}

Status flushKey(KeyRef key) {
    return status(::RegFlushKey(key));
}

Status queryInfoKey(KeyRef key, std::uint32_t* subkeys, std::uint32_t* values) {
    return status(::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, dword(subkeys), nullptr, nullptr,
                                     dword(values), nullptr, nullptr, nullptr, nullptr));
}

Status enumKey(KeyRef key, std::uint32_t index, char16_t* name, std::uint32_t& length) {
    return status(
        ::RegEnumKeyExW(key, index, wide(name), dword(&length), nullptr, nullptr, nullptr, nullptr));
}

Status enumValue(KeyRef key, std::uint32_t index, char16_t* name, std::uint32_t& length) {
    return status(
        ::RegEnumValueW(key, index, wide(name), dword(&length), nullptr, nullptr, nullptr, nullptr));
}

std::uint32_t expandEnvironmentStrings(const std::u16string& source, char16_t* buffer, std::uint32_t size) {
    return ::ExpandEnvironmentStringsW(wide(source), wide(buffer), size);
}

}  // namespace platform
