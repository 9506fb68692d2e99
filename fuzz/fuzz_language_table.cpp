// Any keys, language names and texts in a table: written in any encoding and with any line ends, whole or one
// language with another beside it, they are read back.
#include "fuzz/fuzz_tables.h"

using fuzz::require;

namespace {

// A key or name that one line can hold.
std::u16string nameFrom(FuzzedDataProvider& input) {
    std::u16string name = fuzz::wide(input.ConsumeRandomLengthString(16));
    std::erase(name, u'\n');
    return std::u16string(owlkit::trim(name));
}

void fill(owlkit::interlang& table, FuzzedDataProvider& input) {
    const std::u16string names[] = {nameFrom(input), nameFrom(input), nameFrom(input)};
    std::u16string key;
    table.BeginLoad();
    while (input.remaining_bytes() > 0) {
        if (key.empty() || input.ConsumeBool())
            key = nameFrom(input);
        const std::u16string& name = input.PickValueInArray(names);
        table.SetKey(key);
        table.SetLanguage(name);
        const std::u16string text = fuzz::wide(input.ConsumeRandomLengthString(128));
        const std::string error = test::errorOf([&] { table.AddText(text); });
        require(error == (key.empty() || name.empty() ? "invalid state" : ""));
    }
    table.EndLoad();
}

// The settings in which a reader finds out by itself what it has: marked, or UTF-8.
void choose(owlkit::MemoryStream& stream, FuzzedDataProvider& input) {
    using owlkit::StringTerminator;
    using owlkit::TextEncoding;
    const auto encoding = fuzz::pick<TextEncoding>(input, 3);
    const auto order = fuzz::pick<owlkit::ByteOrder>(input, 2);
    stream.setTextEncoding(encoding);
    // The other order's mark of UTF-32 is taken for UTF-16's.
    stream.setByteOrder(encoding == TextEncoding::Utf32 ? owlkit::ByteOrder::BigEndian : order);
    stream.setStringTerminator(input.PickValueInArray(
        {StringTerminator::None, StringTerminator::Lf, StringTerminator::CrLf, StringTerminator::CrLfAlias}));
    if (encoding != TextEncoding::Utf8 || input.ConsumeBool())
        require(stream.writeByteOrderMark() == (encoding != TextEncoding::None));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    owlkit::MemoryStream out;
    choose(out, input);
    const std::size_t chosen = input.ConsumeIntegralInRange<std::size_t>(0, 3);
    const std::size_t beside = input.ConsumeIntegralInRange<std::size_t>(0, 3);
    owlkit::interlang table;
    fill(table, input);

    std::vector<std::u16string> languages;
    table.GetLanguages(languages);
    const auto name = [&](std::size_t index) {
        return index < languages.size() ? languages[index] : std::u16string();
    };
    const std::u16string language = name(chosen);
    require(table.Write(out, language, name(beside)) == !languages.empty());
    if (!languages.empty())
        require(test::errorOf([&] { table.Write(out, u"no such name"); }) == "invalid state");
    if (!language.empty())
        languages = {language};
    fuzz::requireWritten(table, languages, out);
    return 0;
}
