// Any bytes as a language file: reading ends with a line number, and what was read is written and read back
// the same.
#include <cstdlib>

#include "foundation/stream/memory_stream.h"
#include "lang/interlang.h"

namespace {

bool read(owlkit::interlang& table, owlkit::MemoryStream& stream) {
    std::uint32_t line = 0;
    table.BeginLoad();
    const bool whole = table.Parse(stream, line);
    table.EndLoad();
    return whole;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    owlkit::MemoryStream file(data, size);
    owlkit::interlang table;
    read(table, file);

    std::vector<std::u16string> languages;
    std::vector<std::u16string> keys;
    table.GetLanguages(languages);
    table.GetKeys(keys);
    owlkit::MemoryStream written;
    if (table.Write(written) != !languages.empty())
        std::abort();
    written.seek(0, 0);
    owlkit::interlang again;
    if (!read(again, written) && !languages.empty())
        std::abort();
    for (const std::u16string& key : keys)
        for (const std::u16string& language : languages) {
            // A literal backslash before an escape's letter is known not to come back.
            const std::u16string text = table.GetText(key, language);
            if (table.HasText(key, language) && text.find(u'\\') == std::u16string::npos &&
                again.GetText(key, language) != text)
                std::abort();
        }
    return 0;
}
