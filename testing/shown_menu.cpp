#include "testing/shown_menu.h"

namespace test {

std::u16string shownItem(std::u16string_view text, bool isGrayed,
                         const std::optional<std::u16string>& below) {
    std::u16string item(text);
    if (isGrayed)
        item = u"[" + item + u"]";
    if (below)
        item += u"{" + *below + u"}";
    return item + u"|";
}

}  // namespace test
