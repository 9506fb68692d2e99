#include <algorithm>

#include "foundation/errors.h"
#include "lang/escapes.h"
#include "lang/interlang.h"
#include "lang/kept_settings.h"

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

    // False when a line could not be written.
    bool language(std::u16string_view name) {
        if (!line(kRule) || !line(u"LANG: ", name) || !line(kRule) || !line({}))
            return false;
        if (table_.translations_.contains(kLanguageKey)) {
            if (!reference_.empty() && !line(u"# Localized language name"))
                return false;
            if (!entry(kLanguageKey, name))
                return false;
        }
        return pass(name, true) && pass(name, false);
    }

  private:
    bool pass(std::u16string_view name, bool identifiers) {
        for (const auto& [key, texts] : table_.translations_) {
            if (key == kLanguageKey || isIdentifier(key) != identifiers)
                continue;
            if (!reference_.empty() && !line(u"# ", encodedText(reference_, key)))
                return false;
            if (!entry(key, name))
                return false;
        }
        return true;
    }

    bool entry(std::u16string_view key, std::u16string_view name) {
        return line(u"KEY: ", key) && line(u"TEXT: ", encodedText(name, key)) && line({});
    }

    std::u16string encodedText(std::u16string_view name, std::u16string_view key) const {
        const std::u16string* text = table_.storedText(name, key);
        return text == nullptr ? std::u16string() : encodeEscapes(*text);
    }

    // Every line has at least its terminator, so 0 bytes written is a failure.
    bool line(std::u16string_view start, std::u16string_view rest = {}) {
        buffer_.assign(start).append(rest);
        return out_.writeText(buffer_) != 0;
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
    const KeptSettings kept(out);
    if (out.stringTerminator() == kNoTerminator)
        out.setStringTerminator(kLf);
    if (out.textEncoding() == kEncodingNone)
        out.setTextEncoding(kEncodingUtf8);
    Writer writer(*this, out, knowsLanguage(reference) ? reference : std::u16string_view());
    if (!language.empty())
        return writer.language(language);
    return std::all_of(languages_.begin(), languages_.end(),
                       [&](const auto& name) { return writer.language(name); });
}

}  // namespace owlkit
