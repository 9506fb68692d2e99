#include "tools/interlang/hints.h"

#include <set>

#include "tools/interlang/language_files.h"
#include "tools/interlang/menu_levels.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

using Lines = std::set<std::string>;

struct Place {
    Lines menus, offsets, accelerators, helps;
};

std::string name(const MenuLevel& level) {
    using nmshell::SelectionKind;
    const std::string menu = level.kind == SelectionKind::Files    ? "files and folders"
                             : level.kind == SelectionKind::Drives ? "drives"
                                                                   : "the Recycle Bin";
    return level.parentKey.empty() ? menu : menu + ", below " + utf8(level.parentKey);
}

void addLevel(const MenuLevel& level, std::map<std::u16string, Place>& places) {
    std::map<std::u16string, std::string> taken;
    for (const LevelEntry& entry : level.entries) {
        if (const char16_t letter = accelerator(entry.text); letter != 0)
            taken[entry.key] = utf8({&letter, 1}) + " (" + utf8(entry.key) + ')';
    }
    for (const LevelEntry& entry : level.entries) {
        Place& place = places[entry.key];
        place.menus.insert(name(level));
        if (entry.offset != nmshell::kNoCommand)
            place.offsets.insert(std::to_string(entry.offset));
        for (const auto& [key, letter] : taken) {
            if (key != entry.key)
                place.accelerators.insert(letter);
        }
        if (!entry.postfixKey.empty())
            places[entry.postfixKey].menus.insert(name(level) + ", behind " + utf8(entry.key));
    }
}

void addLine(const char* title, const Lines& items, std::vector<std::string>& lines) {
    std::string line;
    for (const std::string& item : items)
        line += (line.empty() ? title : "; ") + item;
    if (!line.empty())
        lines.push_back(line);
}

}  // namespace

std::map<std::u16string, std::vector<std::string>> hints(const owlkit::interlang& texts) {
    std::map<std::u16string, Place> places;
    for (const MenuLevel& level : menuLevels(texts))
        addLevel(level, places);
    for (std::uint32_t offset = 0; offset < nmshell::kCommandCount; ++offset)
        places[wide(nmshell::command(offset).helpKey)].helps.insert(std::to_string(offset));
    places.erase(u"");  // of an entry without a text
    std::map<std::u16string, std::vector<std::string>> result;
    for (const auto& [key, place] : places) {
        std::vector<std::string>& lines = result[key];
        addLine("Menu: ", place.menus, lines);
        addLine("Command offset: ", place.offsets, lines);
        addLine("Help text of command offset: ", place.helps, lines);
        addLine("Accelerators taken there: ", place.accelerators, lines);
    }
    result[std::u16string(kLanguageNameKey)] = {"The language's own name for itself"};
    return result;
}

}  // namespace translators
