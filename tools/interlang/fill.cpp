#include "tools/interlang/fill.h"

#include <filesystem>
#include <set>

#include "foundation/path/path.h"
#include "platform/file.h"
#include "tools/interlang/file_access.h"
#include "tools/interlang/layout.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

namespace fs = std::filesystem;

// The reference's texts that `language` needs, by the file that gets them.
std::map<std::size_t, Texts> needed(const LanguageFiles& files, const std::u16string& language,
                                    std::size_t firstFile, const Reference& reference) {
    std::map<std::size_t, Texts> texts;
    const Texts& own = *files.texts(language);
    for (const auto& [key, text] : reference.texts) {
        const auto found = own.find(key);
        if (key == kLanguageNameKey || isBlank(text.text) ||
            (found != own.end() && (!isBlank(found->second.text) || found->second.meantEmpty)))
            continue;
        const std::size_t file = found == own.end() ? firstFile : found->second.file;
        Text& copy = texts[file].emplace(key, text).first->second;
        copy.notes.clear();
        copy.source.reset();
    }
    return texts;
}

// What each file becomes, in their order.
std::vector<std::string> fillFiles(const LanguageFiles& files, const Reference& reference,
                                   std::size_t& filled) {
    std::vector<LanguageFile> copies = files.files();
    std::set<std::u16string> met;
    std::set<std::size_t> changed;
    for (std::size_t i = 0; i < copies.size(); ++i) {
        requireWhole(copies[i]);
        for (const std::u16string& language : files.files()[i].languages) {
            if (language == reference.code || !met.insert(language).second)
                continue;
            for (auto& [file, texts] : needed(files, language, i, reference)) {
                changed.insert(file);
                filled += texts.size();
                texts.merge(copies[file].texts[language]);
                copies[file].texts[language] = std::move(texts);
            }
        }
    }
    std::vector<std::string> results;
    for (std::size_t i = 0; i < copies.size(); ++i)
        results.push_back(changed.contains(i) ? layOutFile(copies[i], reference) : copies[i].bytes);
    return results;
}

std::size_t removeAllBut(const std::set<fs::path>& kept, const fs::path& folder) {
    std::size_t count = 0;
    for (const std::u16string& path : languageFilesOf(owlkit::withTrailingSeparator(folder.u16string()))) {
        if (kept.contains(path))
            continue;
        if (!platform::deleteFile(path).succeeded())
            throw Failure("cannot delete " + utf8(path));
        ++count;
    }
    return count;
}

}  // namespace

FillResult fillFolder(const LanguageFiles& files, const Reference& reference, const std::u16string& folder,
                      bool removeOthers) {
    FillResult result;
    const std::vector<std::string> contents = fillFiles(files, reference, result.filled);
    std::error_code error;
    fs::create_directories(folder, error);
    std::vector<fs::path> copies;
    std::set<fs::path> names;
    for (const LanguageFile& file : files.files()) {
        const fs::path& copy = copies.emplace_back(fs::path(folder) / fs::path(file.path).filename());
        if (!names.insert(copy).second || fs::equivalent(copy, file.path, error))
            throw Failure("the copy " + utf8(copy.u16string()) + " would replace one of the files");
    }
    for (std::size_t i = 0; i < copies.size(); ++i) {
        const std::u16string copy = copies[i].u16string();
        if (!fs::exists(copies[i], error) || readBytes(copy) != contents[i])
            writeBytes(copy, contents[i]);
    }
    if (removeOthers)
        result.deleted = removeAllBut(names, folder);
    return result;
}

}  // namespace translators
