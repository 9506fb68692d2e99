// Language files with all that translators ask about their texts: where they stand, how they are written,
// what they were translated from and what is noted about them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lang/interlang.h"
#include "lang/language_file_names.h"

namespace translators {

using owlkit::kLanguageNameKey;

// A text, or the place of one that is still to be translated.
struct Text {
    std::u16string written;  // as in the file, escapes not decoded
    std::u16string text;
    std::size_t file = 0;    // index in LanguageFiles
    std::uint32_t line = 0;  // of the TEXT: record
    // The comment above it: the reference text that it was translated from, as written, and the other lines.
    std::optional<std::u16string> source;
    std::vector<std::u16string> notes;
    bool meantEmpty = false;  // marked as empty on purpose
};
using Texts = std::map<std::u16string, Text, std::less<>>;  // by key

// A text that a later one in the same file replaced.
struct ReplacedText {
    std::u16string key;
    std::u16string language;
    std::uint32_t line;        // of the later text
    std::uint32_t formerLine;  // of the one that is lost
    std::u16string former;     // that one, as written
};

struct LineFault {
    std::uint32_t line;
    std::string message;
};

struct LanguageFile {
    std::u16string path;
    std::string bytes;
    std::vector<std::u16string> opening;           // the lines before the first record
    std::vector<std::u16string> closing;           // comments below the last text
    std::vector<std::u16string> languages;         // in the order of the file
    std::map<std::u16string, Texts> texts;         // by language
    std::map<std::u16string, Texts> untranslated;  // by language: the keys that are commented out
    std::vector<ReplacedText> replaced;
    std::optional<LineFault> syntaxError;     // where reading stopped, and why
    std::vector<std::uint32_t> invalidLines;  // those that are not UTF-8; none in a file of UTF-16
    std::vector<LineFault> oddContinuations;  // lines that continue a text and were hardly meant to
    std::vector<LineFault> commentedTexts;    // texts in entries that are commented out
    std::vector<LineFault> lonelyKeys;        // KEY: records without a text
};

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

    // In the order in which they were first met, those included of which nothing is translated.
    std::vector<std::u16string> languages() const;
    // The texts of a language from all files, later files first; null when no file has the language.
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
// beside the first of them, or of `folder` where `files` are none. Nothing when there are none; throws
// Failure when a file that names the language has a syntax error.
std::optional<Reference> findReference(const LanguageFiles& files, const std::u16string& code,
                                       const std::u16string& file, const std::u16string& folder);

// Whether a record of the file, one behind a syntax error included, names the language.
bool namesLanguage(const LanguageFile& file, std::u16string_view code);

// Whether the text still has to be translated: it is empty without a mark, and the reference's is not.
bool isUntranslated(const Text& text, const Text& reference);

// Whether the reference text is another one now than when the text was translated.
bool isChanged(const Text& text, const Text& reference);

}  // namespace translators
