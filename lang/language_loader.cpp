#include "lang/language_loader.h"

#include "foundation/path/path.h"
#include "foundation/stream/file_stream.h"
#include "foundation/text/number.h"
#include "lang/language_file_names.h"
#include "lang/loading_scope.h"
#include "platform/file.h"

namespace owlkit {
namespace {

// Compatible: the misspelling stays, for those who look for this text in what was reported.
constexpr std::u16string_view kNoFilesText = u"Languange File Error\nFailed to load language files.";
constexpr std::uint32_t kNoLine = 0xFFFFFFFF;

// `line` is the line number of the failure; kNoLine shows as -1.
std::u16string failureText(const std::u16string& path, std::uint32_t line) {
    return u"Language File Error\nThere is a syntax error at line " +
           formatNumber<char16_t>(static_cast<std::int32_t>(line)) + u" in the following file.\n" + path;
}

}  // namespace

bool ListLanguageFiles(const std::u16string& folder, std::vector<std::u16string>& names) {
    names = platform::listFolder(folder).value_or(std::vector<std::u16string>());
    std::erase_if(names, [](const std::u16string& name) {
        return name.size() <= kLanguageFileEnding.size() || !name.ends_with(kLanguageFileEnding);
    });
    return !names.empty();
}

std::u16string LoadLanguageFile(const std::u16string& path, interlang& table) {
    const LoadingScope loading(table);
    std::uint32_t line = kNoLine;
    FileStream file;
    // An editor that holds the file open for writing does not keep the menu away.
    if (file.open(path, OpenMode::Read | OpenMode::ShareReadWrite) && table.Parse(file, line))
        return {};
    return failureText(path, line);
}

std::u16string LoadLanguageFolder(const std::u16string& folder, interlang& table) {
    std::vector<std::u16string> names;
    if (!ListLanguageFiles(folder, names))
        return std::u16string(kNoFilesText);
    std::u16string path = withTrailingSeparator(folder);
    const std::size_t base = path.size();
    std::u16string failure;
    for (const std::u16string& name : names) {
        std::u16string text = LoadLanguageFile(path.replace(base, path.npos, name), table);
        if (failure.empty())
            failure = std::move(text);
    }
    return failure;
}

}  // namespace owlkit
