// Changes to the registry and what a key contains. They stand apart so that a program that only reads values
// is linked without them.
#include "platform/registry.h"

#include "platform/one_name.h"
#include "platform/win32/registry_arguments.h"

namespace platform {
namespace {

using DeleteKeyExFunction = LSTATUS(WINAPI*)(HKEY, LPCWSTR, REGSAM, DWORD);

}  // namespace

ErrorCode createKey(void* parent, const std::u16string& path, std::uint32_t options, std::uint32_t access,
                    RegistryHandle& key) {
    if (!isOneName(path))
        return kErrorInvalidName;
    HKEY created = nullptr;
    const ErrorCode error = code(::RegCreateKeyExW(handle(parent), wide(path), 0, nullptr, options, access,
                                                   nullptr, &created, nullptr));
    if (error == kSuccess)
        key.reset(created);
    return error;
}

ErrorCode deleteKey(void* parent, const std::u16string& path) {
    return isOneName(path) ? code(::RegDeleteKeyW(handle(parent), wide(path))) : kErrorInvalidName;
}

std::optional<ErrorCode> deleteKeyEx(void* parent, const std::u16string& path, std::uint32_t viewFlag) {
    const HMODULE module = ::GetModuleHandleW(L"kernel32");
    if (module == nullptr)
        return std::nullopt;
    // By way of void*: the compiler warns about casts between unlike function types.
    const auto function = reinterpret_cast<DeleteKeyExFunction>(
        reinterpret_cast<void*>(::GetProcAddress(module, "RegDeleteKeyExW")));
    if (function == nullptr)
        return std::nullopt;
    return isOneName(path) ? code(function(handle(parent), wide(path), viewFlag, 0)) : kErrorInvalidName;
}

ErrorCode setValue(void* key, const std::u16string& name, std::uint32_t type, const void* data,
                   std::uint32_t size) {
    if (!isOneName(name))
        return kErrorInvalidName;
    return code(::RegSetValueExW(handle(key), wide(name), 0, type, static_cast<const BYTE*>(data), size));
}

ErrorCode deleteValue(void* key, const std::u16string& name) {
    return isOneName(name) ? code(::RegDeleteValueW(handle(key), wide(name))) : kErrorInvalidName;
}

ErrorCode flushKey(void* key) {
    return code(::RegFlushKey(handle(key)));
}

ErrorCode queryInfoKey(void* key, std::uint32_t* subkeys, std::uint32_t* values) {
    return code(::RegQueryInfoKeyW(handle(key), nullptr, nullptr, nullptr, dword(subkeys), nullptr, nullptr,
                                   dword(values), nullptr, nullptr, nullptr, nullptr));
}

ErrorCode enumKey(void* key, std::uint32_t index, char16_t* name, std::uint32_t& length) {
    return code(
        ::RegEnumKeyExW(handle(key), index, wide(name), dword(&length), nullptr, nullptr, nullptr, nullptr));
}

ErrorCode enumValue(void* key, std::uint32_t index, char16_t* name, std::uint32_t& length) {
    return code(
        ::RegEnumValueW(handle(key), index, wide(name), dword(&length), nullptr, nullptr, nullptr, nullptr));
}

std::uint32_t expandEnvironmentStrings(const std::u16string& source, char16_t* buffer, std::uint32_t size) {
    return ::ExpandEnvironmentStringsW(wide(source), wide(buffer), size);
}

}  // namespace platform
