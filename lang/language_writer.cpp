#include "lang/language_writer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "foundation/errors.h"
#include "foundation/stream/memory_stream.h"
#include "lang/escapes.h"
#include "lang/language_file_names.h"

namespace owlkit {
namespace {

constexpr std::u16string_view kRule = u"########################################";

// Keys like CXT_MENU_HELP, which are written before all others.
bool isIdentifier(std::u16string_view key) {
    return key.size() >= 3 &&
           std::all_of(key.begin(), key.end(), [](char16_t c) { return c >= 32 && c <= 96; });
}

// Writes the entries of single languages.
class Writer {
  public:
    // An empty `reference` means none.
    Writer(const interlang& table, ByteStream& out, std::u16string_view reference)
        : table_(table), out_(out), reference_(reference) {
        table.GetKeys(keys_);
    }

    void language(std::u16string_view name) {
        line(kRule);
        line(u"LANG: ", name);
        line(kRule);
        line({});
        if (std::binary_search(keys_.begin(), keys_.end(), kLanguageNameKey)) {
            if (!reference_.empty())
                line(u"# Localized language name");
            entry(kLanguageNameKey, name);
        }
        pass(name, true);
        pass(name, false);
    }

  private:
    void pass(std::u16string_view name, bool identifiers) {
        for (const std::u16string& key : keys_) {
            if (key == kLanguageNameKey || isIdentifier(key) != identifiers)
                continue;
            if (!reference_.empty())
                line(u"# ", encodedText(reference_, key));
            entry(key, name);
        }
    }

    void entry(std::u16string_view key, std::u16string_view name) {
        line(u"KEY: ", key);
        line(u"TEXT: ", encodedText(name, key));
        line({});
    }

    std::u16string encodedText(std::u16string_view name, std::u16string_view key) const {
        std::u16string text;
        table_.Find(name, key, NotFoundMode::GiveNothing, &text);
        return encodeEscapes(text);
    }

    void line(std::u16string_view start, std::u16string_view rest = {}) {
        buffer_.assign(start).append(rest);
        out_.writeText(buffer_);
    }

    const interlang& table_;
    ByteStream& out_;
    std::u16string_view reference_;
    std::vector<std::u16string> keys_;
    std::u16string buffer_;
};

}  // namespace

bool writeLanguages(const interlang& table, ByteStream& out, std::u16string_view language,
                    std::u16string_view reference) {
    std::vector<std::u16string> languages;
    if (table.GetLanguages(languages) == 0)
        return false;
    if (!language.empty() && !table.HasLanguage(language))
        throwInvalidState();
    StreamSettings settings = out.settings();
    if (settings.stringTerminator == StringTerminator::None)
        settings.stringTerminator = StringTerminator::Lf;
    if (settings.textEncoding == TextEncoding::None)
        settings.textEncoding = TextEncoding::Utf8;
    MemoryStream text;
    text.setSettings(settings);
    Writer writer(table, text, table.HasLanguage(reference) ? reference : std::u16string_view());
    if (!language.empty())
        languages.assign(1, std::u16string(language));
    for (const std::u16string& name : languages)
        writer.language(name);
    // In one piece, so that a write that falls short is seen.
    const auto size = static_cast<std::size_t>(text.size());
    return out.write(text.data(), size) == size;
}

}  // namespace owlkit
