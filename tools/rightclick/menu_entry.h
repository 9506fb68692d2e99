// Menus as the client shows them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace rightclick {

// The identifiers that are granted to the shell's own entries and to the extension.
inline constexpr std::uint32_t kShellFirstId = 1;
inline constexpr std::uint32_t kShellLastId = 0x6FFF;
inline constexpr std::uint32_t kFirstId = 0x7000;
inline constexpr std::uint32_t kLastId = 0x7FFF;

inline constexpr int kNoBitmap = 0;
inline constexpr int kOtherBitmap = -1;  // one that is no resource of the extension

// One item of a menu, read back from the menu itself.
struct MenuEntry {
    std::u16string text;
    std::uint32_t id = 0;
    bool separator = false;
    bool submenu = false;
    bool grayed = false;
    bool hidden = false;
    int bitmap = kNoBitmap;  // resource identifier, kNoBitmap or kOtherBitmap
    std::vector<MenuEntry> children;

    bool isOurs() const { return id >= kFirstId && id <= kLastId; }
};

}  // namespace rightclick
