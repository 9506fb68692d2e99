// The numbers by which registry roots, views, modes and value types are known outside the platform.
#pragma once

#include <cstdint>

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

}  // namespace owlkit
