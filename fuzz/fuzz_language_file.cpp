// Any bytes as a language file: reading ends with a line number, and what was read is written and read back
// the same.
#include <algorithm>

#include "fuzz/fuzz_tables.h"

using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    owlkit::MemoryStream file(data, size);
    owlkit::interlang table;
    std::uint32_t line = 0;
    table.BeginLoad();
    const bool whole = table.Parse(file, line);
    table.EndLoad();
    require(file.settingsCompatible(owlkit::MemoryStream()));
    require(line <= size);
    require(!whole || file.atEnd());

    std::vector<std::u16string> languages;
    table.GetLanguages(languages);
    owlkit::MemoryStream written;
    require(table.Write(written) == !languages.empty());
    written.seek(0, owlkit::kFromStart);
    owlkit::interlang again;
    require(fuzz::read(again, written));
    std::vector<std::u16string> languagesAgain;
    again.GetLanguages(languagesAgain);
    require(languagesAgain == languages);
    for (const std::u16string& language : languages)
        fuzz::requireWritten(table, again, language);

    std::u16string report;
    const bool consistent = table.CheckConsistency(report, 0);
    require(consistent == report.empty());
    require(table.CheckConsistency(report, 1) == consistent);
    return 0;
}
