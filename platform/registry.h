// The registry as the platform offers it. Every function is one platform call with that call's own arguments
// and answers its status code, kSuccess or an error; an output is written only on success unless said
// otherwise. Paths and names with a zero inside are refused with kErrorInvalidName (platform/one_name.h).
// Sizes of value data are bytes, lengths of names code units.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/error.h"
#include "platform/handle.h"

// What the SDK's HKEY points to.
struct HKEY__;

namespace platform {

// An open key that somebody else owns, or a predefined root (HKEY).
using KeyRef = HKEY__*;

struct RegistryTraits {
    using Type = KeyRef;
    static constexpr Type none() { return nullptr; }
    static void close(Type key) noexcept;  // RegCloseKey
};
using RegistryHandle = UniqueHandle<RegistryTraits>;

// The numbers of the predefined roots.
inline constexpr std::uint32_t kHkeyClassesRoot = 0x80000000;
inline constexpr std::uint32_t kHkeyCurrentUser = 0x80000001;
inline constexpr std::uint32_t kHkeyLocalMachine = 0x80000002;
inline constexpr std::uint32_t kHkeyUsers = 0x80000003;
inline constexpr std::uint32_t kHkeyCurrentConfig = 0x80000005;

// The handle of a predefined root: its number, sign-extended to the width of a pointer. It needs no closing.
inline KeyRef predefinedKey(std::uint32_t number) {
    return reinterpret_cast<KeyRef>(static_cast<std::intptr_t>(static_cast<std::int32_t>(number)));
}

// Access masks.
inline constexpr std::uint32_t kKeyQueryValue = 0x0001;
inline constexpr std::uint32_t kKeySetValue = 0x0002;
inline constexpr std::uint32_t kKeyCreateSubKey = 0x0004;
inline constexpr std::uint32_t kKeyEnumerateSubKeys = 0x0008;
inline constexpr std::uint32_t kKeyWow64_64Key = 0x0100;
inline constexpr std::uint32_t kKeyWow64_32Key = 0x0200;
inline constexpr std::uint32_t kKeyDelete = 0x10000;
inline constexpr std::uint32_t kKeyRead = 0x20019;
inline constexpr std::uint32_t kKeyWrite = 0x20006;
inline constexpr std::uint32_t kKeyAllAccess = 0xF003F;

// Type codes of values.
inline constexpr std::uint32_t kRegNone = 0;
inline constexpr std::uint32_t kRegSz = 1;
inline constexpr std::uint32_t kRegExpandSz = 2;
inline constexpr std::uint32_t kRegBinary = 3;
inline constexpr std::uint32_t kRegDword = 4;
inline constexpr std::uint32_t kRegMultiSz = 7;
inline constexpr std::uint32_t kRegQword = 11;

// RegOpenKeyExW. An empty path opens `parent` itself. On failure `key` keeps what it held.
Status openKey(KeyRef parent, const std::u16string& path, std::uint32_t options, std::uint32_t access,
               RegistryHandle& key);

// RegCreateKeyExW without class and security attributes: opens the key, making it and missing parents first.
// On failure `key` keeps what it held.
Status createKey(KeyRef parent, const std::u16string& path, std::uint32_t options, std::uint32_t access,
                 RegistryHandle& key);

// RegDeleteKeyW. Not recursive: a key with subkeys is refused.
Status deleteKey(KeyRef parent, const std::u16string& path);

// RegDeleteKeyExW with a view flag, looked up by name in the loaded module "kernel32" at every call; nothing
// when that module or the function is not there, and then nothing was called.
[[nodiscard]] std::optional<Status> deleteKeyEx(KeyRef parent, const std::u16string& path,
                                                std::uint32_t viewFlag);

// RegQueryValueExW. `type`, `data` and `size` may each be null; `data` needs `size`. `*size` is the room in
// `data` on entry and the size of the value on return, also when the room was too small (kErrorMoreData,
// `data` undefined).
Status queryValue(KeyRef key, const std::u16string& name, std::uint32_t* type, void* data,
                  std::uint32_t* size);

// RegSetValueExW.
Status setValue(KeyRef key, const std::u16string& name, std::uint32_t type, const void* data,
                std::uint32_t size);

// RegDeleteValueW.
Status deleteValue(KeyRef key, const std::u16string& name);

// RegFlushKey.
Status flushKey(KeyRef key);

// RegQueryInfoKeyW for the numbers of subkeys and values; either pointer may be null.
Status queryInfoKey(KeyRef key, std::uint32_t* subkeys, std::uint32_t* values);

// RegEnumKeyExW and RegEnumValueW for the name alone. `length` is the room in `name`, terminating NUL
// included, on entry and the length without it on return. A longer name gives kErrorMoreData, an index past
// the end kErrorNoMoreItems.
Status enumKey(KeyRef key, std::uint32_t index, char16_t* name, std::uint32_t& length);
Status enumValue(KeyRef key, std::uint32_t index, char16_t* name, std::uint32_t& length);

// ExpandEnvironmentStringsW, of the text up to its first zero: the length of the expansion with its NUL, or 0
// on failure. `buffer` holds the expansion only when the answer is at most `size`, its room in code units.
[[nodiscard]] std::uint32_t expandEnvironmentStrings(const std::u16string& source, char16_t* buffer,
                                                     std::uint32_t size);

}  // namespace platform
