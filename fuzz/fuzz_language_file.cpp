// Any bytes as a language file: reading ends with a line number, and what was read is written and read back
// the same.
#include "fuzz/fuzz_tables.h"
#include "lang/read_observer.h"

using fuzz::require;

namespace {

// Every line is told before it has an effect, every text before it is stored, and the end of a bad file.
class Observer final : public owlkit::ReadObserver {
  public:
    void line(std::uint32_t number, owlkit::LineKind kind, std::u16string_view content) override {
        require(!failed_ && number == lines_ + 1);
        require((kind == owlkit::LineKind::Blank) <= content.empty());
        lines_ = number;
    }

    void stored(const owlkit::StoredText& text) override {
        require(text.line > textLine_ && text.line <= lines_);
        textLine_ = text.line;
        key_ = text.key;
        language_ = text.language;
        text_ = text.written;
        owlkit::decodeEscapes(text_);
    }

    void failed(owlkit::SyntaxRule) override { failed_ = true; }

    void requireResult(const owlkit::interlang& table, bool whole, std::uint32_t lines) const {
        require(failed_ == !whole && lines_ == lines);
        require(key_.empty() || table.GetText(key_, language_) == text_);
    }

  private:
    std::uint32_t lines_ = 0;
    std::uint32_t textLine_ = 0;
    std::u16string key_;
    std::u16string language_;
    std::u16string text_;
    bool failed_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    owlkit::MemoryStream file(data, size);
    owlkit::interlang table;
    std::uint32_t line = 0;
    table.BeginLoad();
    Observer observer;
    const bool whole = table.Parse(file, line, &observer);
    table.EndLoad();
    observer.requireResult(table, whole, line);
    require(file.settingsCompatible(owlkit::MemoryStream()));
    require(line <= size);
    require(!whole || file.atEnd());

    std::vector<std::u16string> languages;
    table.GetLanguages(languages);
    owlkit::MemoryStream written;
    require(table.Write(written) == !languages.empty());
    fuzz::requireWritten(table, languages, written);

    std::u16string report;
    const bool consistent = table.CheckConsistency(report, 0);
    require(consistent == report.empty());
    require(table.CheckConsistency(report, 1) == consistent);
    return 0;
}
