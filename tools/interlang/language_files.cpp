#include "tools/interlang/language_files.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "foundation/stream/file_stream.h"
#include "foundation/stream/memory_stream.h"
#include "foundation/text/text.h"
#include "lang/language_loader.h"
#include "lang/loading_scope.h"
#include "lang/read_observer.h"
#include "platform/file.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

class Recorder final : public owlkit::ReadObserver {
  public:
    Recorder(LanguageFile& file, std::size_t index) : file_(file), index_(index) {}

    void opening(std::u16string_view line) override { file_.opening.emplace_back(line); }

    void stored(const owlkit::StoredText& stored) override {
        const std::u16string language(stored.language);
        if (std::ranges::find(file_.languages, language) == file_.languages.end())
            file_.languages.push_back(language);
        Text text{std::u16string(stored.written), decoded(stored.written), index_, stored.line};
        const auto [place, isNew] = file_.texts[language].try_emplace(std::u16string(stored.key));
        if (!isNew)
            file_.replaced.push_back({place->first, language, stored.line, place->second.line});
        place->second = std::move(text);
    }

  private:
    LanguageFile& file_;
    std::size_t index_;
};

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

std::u16string folderOf(const std::u16string& path) {
    const std::u16string separators{u'/', platform::kPathSeparator};
    return path.substr(0, path.find_last_of(separators) + 1);
}

// Whether a record of the file, one behind a syntax error included, names the language.
bool names(const LanguageFile& file, std::u16string_view code) {
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

bool names(const LanguageFiles& files, std::u16string_view code) {
    return std::ranges::any_of(files.files(), [&](const LanguageFile& file) { return names(file, code); });
}

Reference referenceFrom(const LanguageFiles& files, const std::u16string& code) {
    for (const LanguageFile& file : files.files()) {
        if (file.syntaxError && names(file, code))
            throw Failure(utf8(file.path) + ':' + std::to_string(*file.syntaxError) +
                          ": syntax error in the reference language; nothing can be compared with it");
    }
    const Texts* texts = files.texts(code);
    if (texts == nullptr)
        throw Failure("no texts in the reference language " + translators::quoted(code) +
                      "; name their file with --reference-file");
    const LanguageFile& first = files.files()[texts->begin()->second.file];
    return {code, *texts, first.path, first.opening};
}

}  // namespace

std::vector<std::u16string> languageFilesOf(const std::u16string& folder) {
    std::vector<std::u16string> paths;
    owlkit::ListLanguageFiles(folder.empty() ? u"." : folder, paths);
    std::ranges::sort(paths);
    for (std::u16string& path : paths)
        path.insert(0, folder);
    return paths;
}

std::string readBytes(const std::u16string& path) {
    owlkit::FileStream file;
    if (!file.open(path, owlkit::kOpenRead))
        throw Failure("cannot open " + utf8(path));
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    if (!bytes.empty() && file.read(bytes.data(), bytes.size()) != bytes.size())
        throw Failure("cannot read " + utf8(path));
    return bytes;
}

void writeBytes(const std::u16string& path, const std::string& bytes) {
    const std::u16string fresh = path + u".new";
    owlkit::FileStream file;
    const bool done = file.open(fresh, owlkit::kCreateWrite) &&
                      (bytes.empty() || file.write(bytes.data(), bytes.size()) == bytes.size()) &&
                      file.flush();
    file.close();
    std::error_code error;
    if (done)
        std::filesystem::rename(fresh, path, error);
    if (!done || error) {
        platform::deleteFile(fresh);
        throw Failure("cannot write " + utf8(path));
    }
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
    if (!table_.Parse(content, line, &recorder))
        file.syntaxError = line;
    for (const auto& [language, texts] : file.texts) {
        for (const auto& [key, text] : texts)
            texts_[language].insert_or_assign(key, text);
    }
}

void LanguageFiles::setLanguages(std::u16string_view active, std::u16string_view primary) {
    const owlkit::LoadingScope loading(table_);
    table_.SetLanguages(active, primary);
}

std::vector<std::u16string> LanguageFiles::languages() const {
    std::vector<std::u16string> names;
    table_.GetLanguages(names);
    return names;
}

const Texts* LanguageFiles::texts(std::u16string_view language) const {
    const auto found = texts_.find(language);
    return found == texts_.end() ? nullptr : &found->second;
}

Reference findReference(const LanguageFiles& files, const std::u16string& code, const std::u16string& file,
                        const std::u16string& folder) {
    if (!file.empty())
        return referenceFrom(LanguageFiles({file}), code);
    if (names(files, code))
        return referenceFrom(files, code);
    const std::u16string beside =
        files.files().empty() ? owlkit::withTrailingSeparator(folder) : folderOf(files.files().front().path);
    return referenceFrom(LanguageFiles(languageFilesOf(beside)), code);
}

}  // namespace translators
