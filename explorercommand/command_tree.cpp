#include "explorercommand/command_tree.h"

#include <iterator>
#include <utility>

namespace nmshell {
namespace {

// The names differ in their last byte, which is the command's offset.
constexpr GUID kFirstName = {0xE27A4C51, 0x93B0, 0x4D68, {0xA5, 0xF2, 0x7B, 0x0C, 0x18, 0xD3, 0x6E, 0x00}};
constexpr std::uint8_t kSubmenuName = 0xFE;
constexpr std::uint8_t kRootName = 0xFF;

}  // namespace

MenuEntry commandTree(const Selection& selection, const MenuFacts& facts, const owlkit::interlang& texts) {
    std::vector<MenuEntry> entries = buildMenu(selection, facts, texts);
    if (entries.empty())
        return {};
    // A separator at each end parts the entries from those of others; before the last one comes the product.
    entries.pop_back();
    MenuEntry root = std::move(entries.back());
    entries.pop_back();
    root.children.insert(root.children.begin(), std::move_iterator(entries.begin() + 1),
                         std::move_iterator(entries.end()));
    return root;
}

GUID canonicalName(const MenuEntry& entry, bool isRoot) {
    GUID name = kFirstName;
    if (entry.offset < kCommandCount)
        name.Data4[7] = static_cast<std::uint8_t>(entry.offset);
    else if (entry.submenu)
        name.Data4[7] = isRoot ? kRootName : kSubmenuName;
    else
        name = {};
    return name;
}

}  // namespace nmshell
