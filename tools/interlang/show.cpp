#include "tools/interlang/show.h"

#include "tools/interlang/text.h"

namespace translators {
namespace {

struct Marks {
    const char *accelerator, *afterAccelerator, *grayed, *afterGrayed;
};
constexpr Marks kPlainMarks = {"_", "_", "", ""};
constexpr Marks kTerminalMarks = {"\x1B[4m", "\x1B[24m", "\x1B[2m", "\x1B[22m"};

std::string drawText(std::u16string_view text, const Marks& marks) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = text.find(u'&');
        result += utf8(text.substr(0, end));
        if (end == std::u16string_view::npos)
            break;
        text.remove_prefix(end + 1);
        if (text.starts_with(u'&')) {
            result += '&';
        } else if (!text.empty()) {
            result += marks.accelerator + utf8(text.substr(0, 1)) + marks.afterAccelerator;
        }
        text.remove_prefix(text.empty() ? 0 : 1);
    }
    return result;
}

void draw(const std::vector<nmshell::MenuEntry>& entries, std::size_t indent, const Marks& marks,
          std::string& result) {
    for (const nmshell::MenuEntry& entry : entries) {
        result.append(indent, ' ');
        if (entry.isSeparator()) {
            result += "--------\n";
            continue;
        }
        const std::string text = drawText(printable(shownText(entry)), marks) + (entry.submenu ? "  >" : "");
        result += entry.grayed ? marks.grayed + text + "  (grayed)" + marks.afterGrayed : text;
        result += '\n';
        draw(entry.children, indent + 4, marks, result);
    }
}

}  // namespace

std::string drawMenu(const std::vector<nmshell::MenuEntry>& entries, bool escapeSequences) {
    std::string result;
    draw(entries, 0, escapeSequences ? kTerminalMarks : kPlainMarks, result);
    return result;
}

}  // namespace translators
