// The numbers by which registry roots, views, modes and value types are known outside the platform.
#pragma once

#include <cstdint>
#include <string_view>

namespace owlkit {

// The predefined root that a path hangs under. Any other number stands for no root: every platform call on it
// fails.
enum class RegistryRoot : std::uint32_t {
    None = 0,
    ClassesRoot = 1,
    CurrentUser = 2,
    LocalMachine = 3,
    Users = 4,
    CurrentConfig = 5
};

// Which of a 64-bit system's two registries a key is looked for in; Default leaves it to the process.
enum class RegistryView : std::uint32_t { Default = 0, Bits32 = 1, Bits64 = 2 };

enum class RegistryMode : std::uint32_t { ReadOnly = 1, ReadWrite = 2 };

enum class KeyAccessState : std::uint32_t { Closed = 0, ReadOnly = 1, ReadWrite = 2 };

// Type of a value. None stands for every platform type that has no number here.
enum class RegistryValueType : std::int32_t {
    None = 0,
    Dword = 1,
    Qword = 2,
    String = 3,
    ExpandableString = 4,
    MultiString = 5,
    Binary = 6
};

// What there is to tell of a value whose bytes were asked for. Those that are more than there was room for
// are not there, and the type is not told.
struct StoredValue {
    RegistryValueType type;
    std::uint32_t size;  // bytes
};

// The text in the `size` bytes of a value of a text type: an odd last byte is ignored and at most one final
// NUL dropped.
inline std::u16string_view storedText(const char16_t* units, std::uint32_t size) {
    const std::u16string_view text(units, size / sizeof(char16_t));
    return text.substr(0, text.size() - (text.ends_with(u'\0') ? 1 : 0));
}

}  // namespace owlkit
