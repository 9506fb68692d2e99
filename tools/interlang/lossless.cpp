#include "tools/interlang/lossless.h"

#include "foundation/text/text.h"
#include "foundation/text/utf16.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

bool isLoneSurrogate(std::u16string_view text, std::size_t at) {
    if (owlkit::isHighSurrogate(text[at]))
        return at + 1 == text.size() || !owlkit::isLowSurrogate(text[at + 1]);
    return owlkit::isLowSurrogate(text[at]) && (at == 0 || !owlkit::isHighSurrogate(text[at - 1]));
}

bool passes(std::u16string_view text, std::size_t at, Medium medium) {
    const char16_t unit = text[at];
    if (medium == Medium::LanguageFile && unit < 32)
        return unit == 0 || (unit >= 7 && unit <= 13);  // the writer's own escapes
    if (medium == Medium::Exchange && unit <= 32) {
        const auto inside = owlkit::trim(text);
        const auto before = static_cast<std::size_t>(inside.data() - text.data());
        return (unit == u' ' || unit == u'\t' || unit == u'\n') && at >= before &&
               at < before + inside.size();
    }
    // The last two are no characters to XML, and the byte-order mark may be lost.
    return !isLoneSurrogate(text, at) && unit != 0xFEFF && unit < 0xFFFE;
}

std::u16string escape(char16_t unit) {
    if (unit == u'\\')
        return u"\\x5C";
    return unit == u' ' ? u"\\x20" : owlkit::encodeEscapes({&unit, 1}, owlkit::EscapeMode::Ascii);
}

std::u16string escaped(std::u16string_view text, Medium medium, bool backslashes) {
    std::u16string form;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (passes(text, at, medium) && (unit != u'\\' || !backslashes))
            form += unit;
        else
            form += escape(unit);
    }
    return form;
}

}  // namespace

std::u16string losslessForm(std::u16string_view written, Medium medium) {
    const std::u16string text = decoded(written);
    if (owlkit::findBrokenEscape(written) != std::u16string_view::npos) {
        const std::u16string plain = escaped(text, medium, false);
        const std::u16string file = medium == Medium::LanguageFile ? owlkit::encodeEscapes(plain) : plain;
        if (decoded(file) == text)
            return plain;
    }
    return escaped(text, medium, true);
}

std::u16string losslessKey(std::u16string_view key) {
    std::u16string form;
    for (std::size_t at = 0; at < key.size(); ++at) {
        if (key[at] >= 32 && key[at] != u'\\' && passes(key, at, Medium::LanguageFile))
            form += key[at];
        else
            form += escape(key[at]);
    }
    return form;
}

}  // namespace translators
