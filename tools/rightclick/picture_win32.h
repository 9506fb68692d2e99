// Pictures of popup menus.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/com.h"

namespace rightclick {

// 32 bits a pixel (blue, green, red, alpha in memory), rows from the top. Opaque, and white where no
// menu was.
struct Picture {
    UINT width = 0;
    UINT height = 0;
    std::vector<std::uint32_t> pixels;
};

// Shows `menu`, opens the submenu at the position `submenu` in it (none if negative), waits until the popup
// windows have settled, takes their picture from the screen and closes the menu. `shell`, which may be null,
// gets the messages with which the owner of the shell's entries draws them. Throws a Failure.
Picture takePopupPicture(HMENU menu, int submenu, IContextMenu2* shell);

// Writes the picture as PNG, with the system's imaging component. Throws a Failure.
void writePng(const std::u16string& file, const Picture& picture);

}  // namespace rightclick
