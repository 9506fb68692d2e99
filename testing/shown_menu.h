// What a menu shows, as a text: each item followed by a bar, a grayed one in brackets, the items of a submenu
// in braces behind its own, and "--" for a separator.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/menu.h"

namespace platform::host {
struct RecordedItem;
}

namespace test {

std::u16string shownItem(std::u16string_view text, bool isGrayed,
                         const std::optional<std::u16string>& below = {});

std::u16string shown(platform::MenuRef menu);

// The same of items of the stand-in.
std::u16string shown(std::span<const platform::host::RecordedItem> items);

}  // namespace test
