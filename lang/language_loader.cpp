#include "lang/language_loader.h"

#include "foundation/stream/file_stream.h"
#include "foundation/stream/memory_stream.h"
#include "foundation/text/number.h"
#include "foundation/text/text.h"
#include "lang/loading_scope.h"
#include "platform/file.h"

namespace owlkit {
namespace {

constexpr std::u16string_view kFileEnding = u".lang.txt";
// The misspelling is deliberate and stays.
constexpr std::u16string_view kNoFilesText = u"Languange File Error\nFailed to load language files.";
constexpr std::uint32_t kNoLine = 0xFFFFFFFF;

// `line` is the line number of the failure; kNoLine shows as -1.
std::u16string failureText(const std::u16string& path, std::uint32_t line) {
    return u"Language File Error\nThere is a syntax error at line " +
           formatNumber<char16_t>(static_cast<std::int32_t>(line)) + u" in the following file.\n" + path;
}

// The file's bytes, positioned at their start. All are read before any is looked at: a read that fails once
// within a line and then goes on would otherwise make two lines of it. An editor that holds the file open for
// writing does not keep the menu away.
bool readWhole(const std::u16string& path, MemoryStream& content) {
    FileStream file;
    if (!file.open(path, kOpenRead | kShareReadWrite) || file.size() > content.maximumSize())
        return false;
    return content.copyFrom(file, -1) == file.size() && content.seek(0, kFromStart);
}

}  // namespace

bool ListLanguageFiles(const std::u16string& folder, std::vector<std::u16string>& names) {
    platform::listFolder(folder, names);
    std::erase_if(names, [](const std::u16string& name) {
        return name.size() <= kFileEnding.size() || !name.ends_with(kFileEnding);
    });
    return !names.empty();
}

std::u16string LoadLanguageFile(const std::u16string& path, interlang& table) {
    const LoadingScope loading(table);
    std::uint32_t line = kNoLine;
    MemoryStream content;
    if (readWhole(path, content) && table.Parse(content, line))
        return {};
    return failureText(path, line);
}

std::u16string LoadLanguageFolder(const std::u16string& folder, interlang& table) {
    std::vector<std::u16string> names;
    if (!ListLanguageFiles(folder, names))
        return std::u16string(kNoFilesText);
    const std::u16string base = withTrailingSeparator(folder);
    std::u16string failure;
    for (const std::u16string& name : names) {
        std::u16string text = LoadLanguageFile(base + name, table);
        if (failure.empty())
            failure = std::move(text);
    }
    return failure;
}

}  // namespace owlkit
