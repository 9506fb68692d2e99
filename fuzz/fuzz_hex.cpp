// Hexadecimal escapes of any bytes and any text: both widths say the same, and what holds no backslash of its
// own can be read back.
#include <algorithm>
#include <cstdio>

#include "foundation/codec/hex.h"
#include "fuzz/fuzz.h"
#include "lang/escapes.h"

using fuzz::require;

namespace {

void bytes(const std::string& content, bool keepPrintable) {
    std::string expected;
    for (const char c : content) {
        char escape[8];
        const bool printable = c >= 0x20;  // up to 7F, the greatest char
        std::snprintf(escape, sizeof(escape), keepPrintable && printable ? "%c" : "<%02X>",
                      static_cast<std::uint8_t>(c));
        expected += escape;
    }
    std::string text;
    owlkit::hexEscape(text, content.data(), content.size(), keepPrintable, "<", ">");
    require(text == expected);
    std::u16string wide;
    owlkit::hexEscape(wide, content.data(), content.size(), keepPrintable, u"<", u">");
    require(wide == fuzz::widened(text));
}

void text(const std::u16string& content, bool keepPrintable) {
    std::u16string escaped = owlkit::hexEscapeText(content, keepPrintable);
    require(std::ranges::all_of(escaped, [](char16_t c) { return c >= 32 && c <= 127; }));
    std::u16string ascii = owlkit::encodeEscapes(content, owlkit::EscapeMode::Ascii);
    require(std::ranges::all_of(ascii, [](char16_t c) { return c >= 32 && c <= 127; }));
    const bool plain = content.find(u'\\') == std::u16string::npos;
    if (plain)
        require(owlkit::findBrokenEscape(ascii) == std::u16string::npos);
    owlkit::decodeEscapes(escaped);
    require(escaped == content || (keepPrintable && !plain));
    owlkit::decodeEscapes(ascii);
    require(ascii == content || !plain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool keepPrintable = input.ConsumeBool();
    const std::string content = input.ConsumeRemainingBytesAsString();
    bytes(content, keepPrintable);
    require(owlkit::hexEscapeText(fuzz::widened(content), keepPrintable) ==
            fuzz::widened(owlkit::hexEscapeText(content, keepPrintable)));
    text(fuzz::wide(content), keepPrintable);
    return 0;
}
