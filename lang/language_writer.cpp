#include <algorithm>

#include "foundation/errors.h"
#include "foundation/stream/memory_stream.h"
#include "lang/escapes.h"
#include "lang/interlang.h"

namespace owlkit {
namespace {

constexpr std::u16string_view kLanguageKey = u"LANGUAGE";  // its text is the language's own name
constexpr std::u16string_view kRule = u"########################################";

// Keys like CXT_MENU_HELP, which are written before all others.
bool isIdentifier(std::u16string_view key) {
    return key.size() >= 3 &&
           std::all_of(key.begin(), key.end(), [](char16_t c) { return c >= 32 && c <= 96; });
}

}  // namespace

// Writes the entries of single languages.
class interlang::Writer {
  public:
    // An empty `reference` means none.
    Writer(const interlang& table, ByteStream& out, std::u16string_view reference)
        : table_(table), out_(out), reference_(reference) {}

    void language(std::u16string_view name) {
        line(kRule);
        line(u"LANG: ", name);
        line(kRule);
        line({});
        if (table_.translations_.contains(kLanguageKey)) {
            if (!reference_.empty())
                line(u"# Localized language name");
            entry(kLanguageKey, name);
        }
        pass(name, true);
        pass(name, false);
    }

  private:
    void pass(std::u16string_view name, bool identifiers) {
        for (const auto& [key, texts] : table_.translations_) {
            if (key == kLanguageKey || isIdentifier(key) != identifiers)
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
        const std::u16string* text = table_.storedText(name, key);
        return text == nullptr ? std::u16string() : encodeEscapes(*text);
    }

    void line(std::u16string_view start, std::u16string_view rest = {}) {
        buffer_.assign(start).append(rest);
        out_.writeText(buffer_);
    }

    const interlang& table_;
    ByteStream& out_;
    std::u16string_view reference_;
    std::u16string buffer_;
};

bool interlang::Write(ByteStream& out, std::u16string_view language, std::u16string_view reference) const {
    requireNotLoading();
    if (languages_.empty())
        return false;
    if (!language.empty() && !knowsLanguage(language))
        throwInvalidState();
    MemoryStream text;
    text.copySettings(out);
    if (text.stringTerminator() == kNoTerminator)
        text.setStringTerminator(kLf);
    if (text.textEncoding() == kEncodingNone)
        text.setTextEncoding(kEncodingUtf8);
    Writer writer(*this, text, knowsLanguage(reference) ? reference : std::u16string_view());
    if (!language.empty())
        writer.language(language);
    else
        for (const std::u16string& name : languages_)
            writer.language(name);
    // In one piece, so that a write that falls short is seen.
    const auto size = static_cast<std::size_t>(text.size());
    return out.write(text.data(), size) == size;
}

}  // namespace owlkit
