#include "platform/host/menu_host.h"
#include "testing/shown_menu.h"

namespace test {

std::u16string shown(std::span<const platform::host::RecordedItem> items) {
    std::u16string text;
    for (const platform::host::RecordedItem& item : items) {
        std::optional<std::u16string> below;
        if (item.submenu)
            below = shown(item.submenu->items);
        text += shownItem(item.request.type == platform::kTypeSeparator ? u"--" : item.text,
                          item.request.state == platform::kStateGrayed, below);
    }
    return text;
}

std::u16string shown(platform::MenuRef menu) {
    return shown(platform::host::menu(menu).items);
}

}  // namespace test
