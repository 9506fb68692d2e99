#include "tools/interlang/text_checks.h"

#include <algorithm>

#include "contextmenu/menu_model.h"
#include "foundation/text/text.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

constexpr std::u16string_view kPlaceholders[] = {u"%1", u"%2"};

bool isBlankUnit(char16_t unit) {
    return unit <= 32 || unit == 0xA0 || unit == 0x3000;
}

std::size_t occurrences(std::u16string_view text, std::u16string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::u16string_view::npos;
         at = text.find(part, at + part.size()))
        ++count;
    return count;
}

bool isLetter(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit > 0xBF;
}

}  // namespace

// Encoded surrogates, which the library lets pass so that every text can be written, are no UTF-8 either.
bool isUtf8(std::string_view bytes) {
    bool failed = false;
    owlkit::ToWide(bytes, owlkit::kCharsetUtf8, owlkit::ErrorPolicy::Replace, u'?', &failed);
    for (std::size_t at = bytes.find('\xED'); at != std::string_view::npos; at = bytes.find('\xED', at + 1))
        failed |= at + 1 < bytes.size() && static_cast<unsigned char>(bytes[at + 1]) >= 0xA0;
    return !failed;
}

bool isBlank(std::u16string_view text) {
    return std::ranges::all_of(text, isBlankUnit);
}

bool hasOuterBlanks(std::u16string_view text) {
    return !text.empty() && (isBlankUnit(text.front()) || isBlankUnit(text.back()));
}

std::string placeholderDifference(std::u16string_view text, std::u16string_view reference) {
    std::string difference;
    for (const std::u16string_view placeholder : kPlaceholders) {
        const std::size_t here = occurrences(text, placeholder);
        const std::size_t there = occurrences(reference, placeholder);
        if (here != there)
            difference += (difference.empty() ? "" : ", ") + utf8(placeholder) + " occurs " +
                          std::to_string(here) + " times instead of " + std::to_string(there);
    }
    return difference;
}

bool isInternational(std::u16string_view text) {
    std::u16string rest = owlkit::replaceAll(text, u"&", u"");
    for (const std::u16string_view placeholder : kPlaceholders)
        rest = owlkit::replaceAll(rest, placeholder, u" ");
    rest = owlkit::replaceAll(rest, nmshell::kProductName, u" ");
    std::size_t words = 0;
    for (std::size_t i = 0; i < rest.size(); ++i)
        words += isLetter(rest[i]) && (i == 0 || !isLetter(rest[i - 1]));
    return words < 2;
}

}  // namespace translators
