#include "tools/interlang/menu_levels.h"

#include "tools/interlang/letter_case.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

using nmshell::MenuEntry;
using nmshell::MenuFacts;
using nmshell::RecycleBinState;
using nmshell::Selection;
using nmshell::SelectionKind;
using owlkit::ElevationState;
using owlkit::PathType;

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
                        for (const auto elevation :
                             {ElevationState::Unknown, ElevationState::Limited, ElevationState::Full})
                            cases.push_back({{kind, count, {}}, {type, system, bin, elevation}});
    return cases;
}

void appendKeys(const std::vector<MenuEntry>& entries, std::u16string& keys) {
    for (const MenuEntry& entry : entries) {
        appendShownText(entry, keys);
        keys += u'\n';
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
    const std::size_t own = levels.size() - 1;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].isSeparator())
            continue;
        const std::u16string key = wide(keys[i].text);
        levels[own].entries.push_back({key, shownText(texts[i]), wide(keys[i].postfix), keys[i].offset});
        if (!keys[i].submenu)
            continue;
        levels.push_back({levels[own].kind, key, {}});
        appendLevels(keys[i].children, texts[i].children, levels);
    }
}

}  // namespace

std::vector<MenuLevel> menuLevels(const owlkit::interlang& texts) {
    std::vector<MenuLevel> levels;
    for (const MenuCase& menu : distinctCases()) {
        levels.push_back({menu.selection.kind, {}, {}});
        appendLevels(keyMenu(menu), nmshell::buildMenu(menu.selection, menu.facts, texts), levels);
    }
    return levels;
}

std::set<std::u16string> programKeys() {
    std::set<std::u16string> keys;
    for (const MenuLevel& level : menuLevels(owlkit::interlang())) {
        for (const LevelEntry& entry : level.entries)
            keys.insert({entry.key, entry.postfixKey});
    }
    for (std::uint32_t offset = 0; offset < nmshell::kCommandCount; ++offset)
        keys.insert(wide(nmshell::command(offset).helpKey));
    keys.erase(u"");  // of an entry without a text or without a postfix
    return keys;
}

char16_t accelerator(std::u16string_view text) {
    char16_t found = 0;
    for (std::size_t at = text.find(u'&'); at != std::u16string_view::npos; at = text.find(u'&', at + 2)) {
        if (at + 1 < text.size() && text[at + 1] != u'&' && text[at + 1] > 32)
            found = lowerCase(text[at + 1]);
    }
    return found;
}

}  // namespace translators
