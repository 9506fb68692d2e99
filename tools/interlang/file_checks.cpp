#include "tools/interlang/file_checks.h"

#include <algorithm>

#include "foundation/path/path.h"
#include "foundation/text/text.h"
#include "lang/language_file_names.h"
#include "platform/file.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

// "aar=aa": the longer code, and the shorter one if there is one.
constexpr std::u16string_view kCodes[] = {
#include "tools/interlang/language_codes.inc"
};

constexpr std::u16string_view kRegions[] = {
#include "tools/interlang/region_codes.inc"
};

constexpr std::u16string_view kSeparators = u"-_";

std::u16string_view longer(std::u16string_view row) {
    return row.substr(0, 3);
}

std::u16string_view shorter(std::u16string_view row) {
    return row.substr(4);
}

bool isCode(std::u16string_view code) {
    return std::ranges::any_of(
        kCodes, [&](std::u16string_view row) { return code == longer(row) || code == shorter(row); });
}

std::u16string_view primaryPart(std::u16string_view code) {
    return code.substr(0, code.find_first_of(kSeparators));
}

bool isSeparator(char16_t unit) {
    return kSeparators.find(unit) != std::u16string_view::npos;
}

bool isAlphanumeric(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || ((unit | 32) >= u'a' && (unit | 32) <= u'z');
}

// The part of two letters behind the language's is a region.
std::string regionFault(std::u16string_view code) {
    for (std::size_t end = code.find_first_of(kSeparators); end != std::u16string_view::npos;
         end = code.find_first_of(kSeparators, end + 1)) {
        const std::u16string_view part =
            code.substr(end + 1, code.find_first_of(kSeparators, end + 1) - end - 1);
        if (part.size() == 2 && std::ranges::find(kRegions, part) == std::end(kRegions))
            return utf8(part) + " is no region of ISO 3166, whose letters are capital ones";
    }
    return {};
}

std::u16string_view nameOf(std::u16string_view path) {
    return path.substr(owlkit::folderOf(path).size());
}

}  // namespace

std::string noTextsReason(std::string_view bytes) {
    if (bytes.empty())
        return "the file is empty";
    const bool marked = bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE");
    if (bytes.find_first_not_of('\0') == std::string_view::npos)
        return "nothing but zeros in it";
    if (!marked && bytes.find('\0') != std::string_view::npos)
        return "zeros in it; UTF-16 needs a byte-order mark";
    if (bytes.find('\n') == std::string_view::npos && bytes.find('\r') != std::string_view::npos)
        return "its lines end in CR; they must end in LF or CR LF";
    if (!marked && bytes.find("TEXT:") == std::string_view::npos)
        return "there is no TEXT: in it";
    return {};
}

bool isCodeForm(std::u16string_view code) {
    const auto bothSeparate = [](char16_t a, char16_t b) { return isSeparator(a) && isSeparator(b); };
    return !code.empty() && !isSeparator(code.front()) && !isSeparator(code.back()) &&
           std::ranges::adjacent_find(code, bothSeparate) == code.end() &&
           std::ranges::all_of(code, [](char16_t unit) { return isSeparator(unit) || isAlphanumeric(unit); });
}

void requireCodeForm(std::u16string_view code) {
    if (!isCodeForm(code))
        throw Failure("no code of a language: " + quoted(code));
}

std::string languageCodeFault(std::u16string_view code) {
    if (!isCodeForm(code))
        return quoted(code) + " has not the form of a code, such as pt or pt-PT";
    const std::u16string_view primary = primaryPart(code);
    if (primary == u"no")
        return "Windows reports nb";
    const std::u16string lower = owlkit::toLowerAscii(primary);
    if (lower != primary && isCode(lower))
        return "Windows reports " + utf8(lower) + ", in lower case";
    for (const std::u16string_view row : kCodes) {
        if (primary == longer(row) && !shorter(row).empty())
            return "Windows reports " + utf8(shorter(row)) + ", the code of ISO 639-1";
    }
    if (!isCode(primary))
        return utf8(primary) + " is no code of ISO 639";
    if (code.find(u'_') != std::u16string_view::npos)
        return "parts of a code are separated by a hyphen";
    return regionFault(code);
}

std::string fileNameFault(const LanguageFile& file) {
    std::u16string_view name = nameOf(file.path);
    name = name.substr(0, name.find(u'.'));
    const std::size_t start = name.find_first_not_of(u"0123456789");
    if (start != std::u16string_view::npos && start > 0 && name[start] == u'-')
        name.remove_prefix(start + 1);
    if (file.languages.empty() || !isCode(primaryPart(name)) ||
        std::ranges::find(file.languages, name) != file.languages.end())
        return {};
    return "named after " + utf8(name) + ", but there is " + utf8(file.languages.front()) + " in it";
}

bool isNeverRead(std::u16string_view path) {
    const std::u16string_view name = nameOf(path);
    return !name.ends_with(owlkit::kLanguageFileEnding) || name.size() == owlkit::kLanguageFileEnding.size();
}

std::vector<std::u16string> unreadFilesOf(const std::u16string& folder) {
    auto names = platform::listFolder(folder).value_or(std::vector<std::u16string>());
    std::vector<std::u16string> unread;
    std::ranges::sort(names);
    for (const std::u16string& name : names) {
        const std::u16string lower = owlkit::toLowerAscii(name);
        const std::u16string_view stem = std::u16string_view(lower).substr(0, lower.find(u'.'));
        const bool meant = lower.find(owlkit::kLanguageFileEnding) != std::u16string::npos ||
                           lower.ends_with(u".lang") ||
                           (isCode(primaryPart(stem)) && lower.ends_with(u".txt"));
        const bool hidden = lower.starts_with(u'.');  // an editor's, while the file is open in it
        if (meant && !hidden && isNeverRead(name))
            unread.push_back(folder + name);
    }
    return unread;
}

}  // namespace translators
