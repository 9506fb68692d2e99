// What a reader of language files tells those who want to know what stands where in a file.
#pragma once

#include <cstdint>
#include <string_view>

namespace owlkit {

// The views hold for the time of the call.
struct StoredText {
    std::uint32_t line;  // of its TEXT: record, the first line being 1
    std::u16string_view key;
    std::u16string_view language;
    std::u16string_view written;  // as the file has it: continued lines joined, escapes not decoded
};

enum class LineKind { Blank, Comment, Key, Language, Text, Continuation };

// What ends the reading of a file.
enum class SyntaxRule {
    KeyAfterKey,
    TextAfterText,
    NoKey,                // a complete text for which there is no key,
    NoLanguage,           // or no language
    NothingToContinue,    // a continuing line behind a LANG: record or before the first record,
    ContinuesEmptyRecord  // or behind a KEY: or TEXT: record with nothing in it
};

class ReadObserver {
  public:
    // A line, before it has any effect: of a record what stands behind its name, of others the trimmed line.
    virtual void line(std::uint32_t number, LineKind kind, std::u16string_view content) = 0;
    // A text that is put into the table now.
    virtual void stored(const StoredText& text) = 0;
    // The line that was told last breaks this rule.
    virtual void failed(SyntaxRule rule) = 0;

  protected:
    ~ReadObserver() = default;
};

}  // namespace owlkit
