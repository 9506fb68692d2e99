#include "tools/interlang/text_checks.h"

#include <algorithm>
#include <vector>

#include "contextmenu/menu_model.h"
#include "foundation/text/text.h"
#include "foundation/text/utf16.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

constexpr std::size_t kLengthAllowance = 25;
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

bool isAlphanumeric(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit < 128 && isLetter(unit));
}

// The length of what begins with '%' at `at`, such as %s, %3 and %-5d; 0 where it is a plain character, as in
// "50 % of" and "50%-os".
std::size_t percentLength(std::u16string_view text, std::size_t at) {
    if (at + 1 < text.size() && isAlphanumeric(text[at + 1]))
        return 2;
    const std::size_t width = std::min(text.find_first_not_of(u"+-#.", at + 1), text.size());
    const std::size_t letter = std::min(text.find_first_not_of(u"0123456789.", width), text.size());
    return letter == text.size() || letter == width || !isAlphanumeric(text[letter]) ? 0 : letter + 1 - at;
}

// What formatting functions would replace, but nothing here does: %3, %s, {0}.
std::vector<std::u16string_view> unknownPlaceholders(std::u16string_view text) {
    std::vector<std::u16string_view> found;
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
        const std::size_t end = text.find(u'}', at);
        const std::size_t length = text[at] == u'%' ? percentLength(text, at) : 0;
        if (length != 0 &&
            std::ranges::find(kPlaceholders, text.substr(at, length)) == std::end(kPlaceholders))
            found.push_back(text.substr(at, length));
        else if (text[at] == u'{' && end != std::u16string_view::npos && end > at + 1 &&
                 std::ranges::all_of(text.substr(at + 1, end - at - 1), isAlphanumeric))
            found.push_back(text.substr(at, end - at + 1));
    }
    return found;
}

// Characters without a shape that no writing needs: joiners and marks of direction are not among them.
bool isInvisible(char16_t unit) {
    return unit < 32 || (unit >= 0x7F && unit <= 0x9F) || unit == 0xAD || unit == 0x200B || unit == 0x2028 ||
           unit == 0x2029 || (unit >= 0x2060 && unit <= 0x2064) || unit == 0xFEFF || unit >= 0xFFF9;
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
    const auto tell = [&](const std::string& what) { difference += (difference.empty() ? "" : ", ") + what; };
    for (const std::u16string_view placeholder : kPlaceholders) {
        const std::size_t here = occurrences(text, placeholder);
        const std::size_t there = occurrences(reference, placeholder);
        if (here != there)
            tell(utf8(placeholder) + " occurs " + std::to_string(here) + " times instead of " +
                 std::to_string(there));
    }
    for (const std::u16string_view unknown : unknownPlaceholders(text)) {
        if (text == reference || occurrences(reference, unknown) == 0)
            tell(utf8(unknown) + " is not replaced by anything");
    }
    return difference;
}

std::string controlFault(std::u16string_view text, std::u16string_view reference) {
    std::size_t embeddings = 0, isolates = 0;
    for (const char16_t unit : text) {
        embeddings += unit >= 0x202A && unit <= 0x202E && unit != 0x202C;
        isolates += unit >= 0x2066 && unit <= 0x2068;
        if (unit == 0x202C)
            embeddings -= embeddings > 0;
        if (unit == 0x2069)
            isolates -= isolates > 0;
        const bool isOverride = unit == 0x202D || unit == 0x202E;
        if ((isInvisible(unit) || isOverride) && reference.find(unit) == std::u16string_view::npos)
            return "the character " +
                   utf8(owlkit::encodeEscapes(printable({&unit, 1}), owlkit::EscapeMode::Ascii)) + " in it";
    }
    return embeddings + isolates == 0 ? "" : "the direction of the text is set and not set back";
}

bool endsInEllipsis(std::u16string_view text) {
    if (text.ends_with(u')') && text.size() > 4 && text[text.size() - 3] == u'&' &&
        text[text.size() - 4] == u'(')
        text.remove_suffix(4);
    while (!text.empty() && isBlankUnit(text.back()))
        text.remove_suffix(1);
    return text.ends_with(u"...") || text.ends_with(u'\u2026');
}

std::size_t columns(std::u16string_view text) {
    std::size_t count = 0;
    for (const char16_t unit : text) {
        const bool nothing = owlkit::isLowSurrogate(unit) || (unit >= 0x300 && unit <= 0x36F);
        const bool wide = (unit >= 0x1100 && unit <= 0x115F) || (unit >= 0x2E80 && unit <= 0xA4CF) ||
                          (unit >= 0xAC00 && unit <= 0xD7A3) || (unit >= 0xFF00 && unit <= 0xFF60);
        count += nothing ? 0u : wide ? 2u : 1u;
    }
    return count;
}

bool isTooLong(std::u16string_view text, std::u16string_view reference) {
    return columns(text) > 2 * columns(reference) + kLengthAllowance;
}

std::size_t accelerators(std::u16string_view text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(u'&'); at != std::u16string_view::npos; at = text.find(u'&', at + 2))
        count += at + 1 < text.size() && text[at + 1] != u'&' && text[at + 1] > 32;
    return count;
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
