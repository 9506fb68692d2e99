#include "tools/interlang/comments.h"

#include "foundation/text/text.h"

namespace translators {
namespace {

bool canBeSource(std::u16string_view line) {
    return line == u"#" || (line.starts_with(u'#') && line.size() > 1 && line[1] <= 32) ||
           // Written without the blank; the characters that mean something are not letters.
           (line.size() > 1 && line[0] == u'#' && std::u16string_view(u"#~,>|.:").find(line[1]) == line.npos);
}

}  // namespace

bool isLayoutComment(std::u16string_view line) {
    const bool isRule = line.size() == 40 && line.find_first_not_of(u'#') == std::u16string_view::npos;
    return isRule || line.starts_with(kObsoleteComment) || line.starts_with(kNowMark);
}

std::vector<std::u16string> withoutLayout(const std::vector<std::u16string>& lines) {
    std::vector<std::u16string> kept;
    for (const std::u16string& line : lines) {
        if (!isLayoutComment(line) && !(line.empty() && (kept.empty() || kept.back().empty())))
            kept.push_back(line);
    }
    if (!kept.empty() && kept.back().empty())
        kept.pop_back();
    return kept;
}

void takeComments(const std::vector<std::u16string>& lines, std::u16string_view key, Text& text) {
    std::vector<std::u16string> rest;
    for (const std::u16string& line : lines) {
        if (line == kEmptyMark)
            text.meantEmpty = true;
        else
            rest.push_back(line);
    }
    if (key == kLanguageNameKey)
        std::erase(rest, kLanguageComment);
    else if (!rest.empty() && canBeSource(rest.back()) && !isLayoutComment(rest.back())) {
        text.source = owlkit::trimLeft(std::u16string_view(rest.back()).substr(1));
        rest.pop_back();
    }
    for (std::u16string& note : withoutLayout(rest))
        text.notes.push_back(std::move(note));
}

}  // namespace translators
