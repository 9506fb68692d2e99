// Any bytes as a language file: reading ends with a line number, and what was read is written and read back
// the same.
#include "fuzz/fuzz_tables.h"
#include "lang/read_observer.h"

using fuzz::require;

namespace {

// Every line is told, and the end of a bad file; a text is stored in one of the lines told.
struct Observer final : owlkit::ReadObserver {
    void line(std::uint32_t number, owlkit::LineKind kind, std::u16string_view content) override {
        require(!hasFailed && number == lines + 1);
        require((kind == owlkit::LineKind::Blank) <= content.empty());
        lines = number;
    }
    void stored(const owlkit::StoredText& text) override {
        require(text.line > textLine && text.line <= lines);
        textLine = text.line;
    }
    void failed(owlkit::SyntaxRule) override { hasFailed = true; }

    std::uint32_t lines = 0, textLine = 0;
    bool hasFailed = false;
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
    require(observer.hasFailed == !whole && observer.lines == line);
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
