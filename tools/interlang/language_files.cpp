#include "tools/interlang/language_files.h"

#include <algorithm>
#include <utility>

#include "foundation/path/path.h"
#include "foundation/stream/memory_stream.h"
#include "foundation/text/text.h"
#include "lang/language_loader.h"
#include "lang/loading_scope.h"
#include "tools/interlang/file_access.h"
#include "tools/interlang/recorder.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

std::vector<std::uint32_t> invalidLines(std::string_view bytes) {
    std::vector<std::uint32_t> lines;
    if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE"))
        return lines;
    for (std::uint32_t number = 1; !bytes.empty(); ++number) {
        const std::size_t length = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
        if (!isUtf8(bytes.substr(0, length)))
            lines.push_back(number);
        bytes.remove_prefix(length);
    }
    return lines;
}

bool names(const LanguageFiles& files, std::u16string_view code) {
    return std::ranges::any_of(files.files(),
                               [&](const LanguageFile& file) { return namesLanguage(file, code); });
}

std::optional<Reference> referenceFrom(const LanguageFiles& files, const std::u16string& code) {
    for (const LanguageFile& file : files.files()) {
        if (file.syntaxError && namesLanguage(file, code))
            throw Failure(utf8(file.path) + ':' + std::to_string(file.syntaxError->line) +
                          ": syntax error in the reference language, with which all is compared: " +
                          file.syntaxError->message);
    }
    const Texts* texts = files.texts(code);
    if (texts == nullptr || texts->empty())
        return std::nullopt;
    const LanguageFile& first = files.files()[texts->begin()->second.file];
    return Reference{code, *texts, first.path, first.opening};
}

}  // namespace

std::vector<std::u16string> languageFilesOf(const std::u16string& folder) {
    std::vector<std::u16string> paths;
    // That there is none shows in the list.
    static_cast<void>(owlkit::ListLanguageFiles(folder.empty() ? u"." : folder, paths));
    std::ranges::sort(paths);
    for (std::u16string& path : paths)
        path.insert(0, folder);
    return paths;
}

LanguageFiles::LanguageFiles(const std::vector<std::u16string>& paths) {
    files_.reserve(paths.size());
    for (const std::u16string& path : paths)
        read(path);
    setLanguages({}, {});
}

void LanguageFiles::read(const std::u16string& path) {
    LanguageFile& file = files_.emplace_back();
    file.path = path;
    file.bytes = readBytes(path);
    file.invalidLines = invalidLines(file.bytes);
    Recorder recorder(file, files_.size() - 1);
    owlkit::MemoryStream content(file.bytes.data(), file.bytes.size());
    const owlkit::LoadingScope loading(table_);
    std::uint32_t line = 0;
    if (table_.Parse(content, line, &recorder))
        recorder.end();
    else if (!file.syntaxError)
        file.syntaxError = {line, "the rest cannot be read"};
    for (const auto& [language, texts] : file.texts) {
        for (const auto& [key, text] : texts)
            texts_[language].insert_or_assign(key, text);
    }
    for (const std::u16string& language : file.languages)
        texts_[language];
}

void LanguageFiles::setLanguages(std::u16string_view active, std::u16string_view primary) {
    const owlkit::LoadingScope loading(table_);
    table_.SetLanguages(active, primary);
}

std::vector<std::u16string> LanguageFiles::languages() const {
    std::vector<std::u16string> names;
    for (const LanguageFile& file : files_) {
        for (const std::u16string& language : file.languages) {
            if (std::ranges::find(names, language) == names.end())
                names.push_back(language);
        }
    }
    return names;
}

const Texts* LanguageFiles::texts(std::u16string_view language) const {
    const auto found = texts_.find(language);
    return found == texts_.end() ? nullptr : &found->second;
}

std::optional<Reference> findReference(const LanguageFiles& files, const std::u16string& code,
                                       const std::u16string& file, const std::u16string& folder) {
    if (!file.empty())
        return referenceFrom(LanguageFiles({file}), code);
    if (names(files, code))
        return referenceFrom(files, code);
    const std::u16string beside = files.files().empty() ? owlkit::withTrailingSeparator(folder)
                                                        : owlkit::folderOf(files.files().front().path);
    return referenceFrom(LanguageFiles(languageFilesOf(beside)), code);
}

bool namesLanguage(const LanguageFile& file, std::u16string_view code) {
    if (file.texts.contains(std::u16string(code)))
        return true;
    const std::u16string text = u'\n' + wide(file.bytes) + u'\n';
    for (std::size_t at = text.find(u"LANG:"); at != std::u16string::npos; at = text.find(u"LANG:", at + 5)) {
        const std::size_t start = text.find_last_of(u'\n', at) + 1;
        const std::u16string_view line =
            owlkit::trim(std::u16string_view(text).substr(start, text.find(u'\n', at) - start));
        if (line.starts_with(u"LANG:") && owlkit::trim(line.substr(5)) == code)
            return true;
    }
    return false;
}

bool isUntranslated(const Text& text, const Text& reference) {
    return text.text.empty() && !text.meantEmpty && !reference.text.empty();
}

bool isChanged(const Text& text, const Text& reference) {
    return text.source && decoded(*text.source) != reference.text;
}

}  // namespace translators
