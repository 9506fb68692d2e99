// What a reader of language files tells those who want to know where in a file its texts stand.
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

class ReadObserver {
  public:
    // A comment or blank line before the first record, trimmed.
    virtual void opening(std::u16string_view line) = 0;
    // A text that is put into the table now.
    virtual void stored(const StoredText& text) = 0;

  protected:
    ~ReadObserver() = default;
};

}  // namespace owlkit
