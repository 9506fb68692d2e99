// Language files with all that translators ask about their texts: where they stand and how they are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lang/interlang.h"

namespace translators {

inline constexpr std::u16string_view kLanguageKey = u"LANGUAGE";  // its text is the language's own name

struct Text {
    std::u16string written;  // as in the file, escapes not decoded
    std::u16string text;
    std::size_t file = 0;    // index in LanguageFiles
    std::uint32_t line = 0;  // of the TEXT: record
};
using Texts = std::map<std::u16string, Text, std::less<>>;  // by key

// A text that a later one in the same file replaced.
struct ReplacedText {
    std::u16string key;
    std::u16string language;
    std::uint32_t line;        // of the later text
    std::uint32_t formerLine;  // of the one that is lost
};

struct LanguageFile {
    std::u16string path;
    std::string bytes;
    std::vector<std::u16string> opening;    // the lines before the first record
    std::vector<std::u16string> languages;  // in the order of the file
    std::map<std::u16string, Texts> texts;  // by language
    std::vector<ReplacedText> replaced;
    std::optional<std::uint32_t> syntaxError;  // the line at which reading stopped
    std::vector<std::uint32_t> invalidLines;   // those that are not UTF-8; none in a file of UTF-16
};

// The file's bytes. Throws Failure when it cannot be read whole.
std::string readBytes(const std::u16string& path);
// Creates the file, or replaces it once all was written beside it; throws Failure, and the old file is then
// as it was.
void writeBytes(const std::u16string& path, const std::string& bytes);

// The paths of the folder's language files, in ascending order; `folder` is empty or ends in a separator.
std::vector<std::u16string> languageFilesOf(const std::u16string& folder);

class LanguageFiles {
  public:
    // Reads all files, in this order. Throws Failure when one cannot be opened; bad content is no failure.
    explicit LanguageFiles(const std::vector<std::u16string>& paths);

    const std::vector<LanguageFile>& files() const { return files_; }
    const owlkit::interlang& table() const { return table_; }
    // Makes `active` the language that the table looks up, and `primary` the one it falls back to.
    void setLanguages(std::u16string_view active, std::u16string_view primary);

    // In the order in which they were first met.
    std::vector<std::u16string> languages() const;
    // The texts of a language from all files, later files first; null when no file has one.
    const Texts* texts(std::u16string_view language) const;

  private:
    void read(const std::u16string& path);

    std::vector<LanguageFile> files_;
    owlkit::interlang table_;
    std::map<std::u16string, Texts, std::less<>> texts_;
};

// The language that others are compared with.
struct Reference {
    std::u16string code;
    Texts texts;
    std::u16string path;                  // where they stand
    std::vector<std::u16string> opening;  // of that file
};

// Looks for the texts of `code` in `file` if that is named, else in `files`, else in all language files
// beside the first of them, or of `folder` where `files` are none. Throws Failure when there are none, or
// when a file that names the language has a syntax error.
Reference findReference(const LanguageFiles& files, const std::u16string& code, const std::u16string& file,
                        const std::u16string& folder);

}  // namespace translators
