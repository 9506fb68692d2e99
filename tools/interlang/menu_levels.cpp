#include "tools/interlang/menu_levels.h"

#include "foundation/process/elevation.h"

namespace translators {
namespace {

using nmshell::MenuEntry;
using nmshell::MenuFacts;
using nmshell::PathType;
using nmshell::RecycleBinState;
using nmshell::Selection;
using nmshell::SelectionKind;

struct MenuCase {
    Selection selection;
    MenuFacts facts;
};

// A table without texts answers each lookup with the key.
std::vector<MenuEntry> keyMenu(const MenuCase& menu) {
    return nmshell::buildMenu(menu.selection, menu.facts, owlkit::interlang());
}

std::vector<MenuCase> allCases() {
    std::vector<MenuCase> cases;
    for (const auto kind : {SelectionKind::Files, SelectionKind::Drives, SelectionKind::RecycleBin})
        for (const std::uint32_t count : {1u, 2u})
            for (const auto type : {PathType::Unreadable, PathType::File, PathType::Folder})
                for (const bool system : {false, true})
                    for (const auto bin :
                         {RecycleBinState::Unknown, RecycleBinState::Empty, RecycleBinState::HoldsItems})
                        for (const std::uint32_t elevation : {0u, 1u, 2u})
                            cases.push_back({{kind, count, {}}, {type, system, bin, elevation}});
    return cases;
}

void appendKeys(const std::vector<MenuEntry>& entries, std::u16string& keys) {
    for (const MenuEntry& entry : entries) {
        keys.append(entry.text).append(u"\n");
        appendKeys(entry.children, keys);
        keys += u'\n';
    }
}

// One case for each set of keys.
const std::vector<MenuCase>& distinctCases() {
    static const std::vector<MenuCase> cases = [] {
        std::vector<MenuCase> distinct;
        std::set<std::u16string> known;
        for (const MenuCase& menu : allCases()) {
            std::u16string keys;
            appendKeys(keyMenu(menu), keys);
            if (known.insert(keys).second)
                distinct.push_back(menu);
        }
        return distinct;
    }();
    return cases;
}

void appendLevels(const std::vector<MenuEntry>& keys, const std::vector<MenuEntry>& texts,
                  std::vector<MenuLevel>& levels) {
    const std::size_t own = levels.size();
    levels.emplace_back();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].isSeparator())
            continue;
        // A postfix stands behind the key after a blank.
        levels[own].push_back({keys[i].text.substr(0, keys[i].text.find(u' ')), texts[i].text});
        if (keys[i].submenu)
            appendLevels(keys[i].children, texts[i].children, levels);
    }
}

void collectKeys(const std::vector<MenuEntry>& entries, std::set<std::u16string>& keys) {
    for (const MenuEntry& entry : entries) {
        const std::size_t blank = entry.text.find(u' ');
        keys.insert(entry.text.substr(0, blank));
        if (blank != std::u16string::npos)  // a postfix
            keys.insert(entry.text.substr(blank + 1));
        collectKeys(entry.children, keys);
    }
    keys.erase(std::u16string(nmshell::kSeparatorText));
    keys.erase(u"");  // of an entry without a text
}

// Lower case for the letters of the alphabets that have one.
char16_t lower(char16_t unit) {
    const auto in = [unit](char16_t first, char16_t last) { return unit >= first && unit <= last; };
    if (in(u'A', u'Z') || (in(0xC0, 0xDE) && unit != 0xD7) || in(0x391, 0x3AB) || in(0x410, 0x42F))
        return static_cast<char16_t>(unit + 32);
    if (in(0x400, 0x40F))
        return static_cast<char16_t>(unit + 80);
    if (in(0x531, 0x556))
        return static_cast<char16_t>(unit + 48);
    const bool oddIsUpper = in(0x139, 0x148) || in(0x179, 0x17E);
    const bool evenIsUpper = in(0x100, 0x137) || in(0x14A, 0x177) || in(0x460, 0x52F) || in(0x1E00, 0x1EFF);
    return (oddIsUpper && unit % 2 == 1) || (evenIsUpper && unit % 2 == 0) ? static_cast<char16_t>(unit + 1)
                                                                           : unit;
}

}  // namespace

std::vector<MenuLevel> menuLevels(const owlkit::interlang& texts) {
    std::vector<MenuLevel> levels;
    for (const MenuCase& menu : distinctCases())
        appendLevels(keyMenu(menu), nmshell::buildMenu(menu.selection, menu.facts, texts), levels);
    return levels;
}

std::set<std::u16string> programKeys() {
    std::set<std::u16string> keys;
    for (const MenuCase& menu : distinctCases())
        collectKeys(keyMenu(menu), keys);
    for (std::uint32_t offset = 0; offset < nmshell::kCommandCount; ++offset)
        keys.emplace(nmshell::command(offset).helpKey);
    return keys;
}

char16_t accelerator(std::u16string_view text) {
    char16_t found = 0;
    for (std::size_t at = text.find(u'&'); at != std::u16string_view::npos; at = text.find(u'&', at + 2)) {
        if (at + 1 < text.size() && text[at + 1] != u'&' && text[at + 1] > 32)
            found = lower(text[at + 1]);
    }
    return found;
}

}  // namespace translators
