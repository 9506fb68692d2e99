#include "foundation/codec/hex.h"

#include <stdexcept>

#include "testing/streams.h"
#include "testing/text.h"

namespace owlkit {
namespace {

using namespace test;

using namespace std::string_view_literals;

TEST(Hex, EscapesBytes) {
    std::string text = "old";
    hexEscape(text, "A\x01", 2, true);
    EXPECT_EQ(text, "A01");
    hexEscape(text, "A\x1F\x20\x7F\x80\xFF", 6, true, "<", ">");
    EXPECT_EQ(text, "A<1F> \x7F<80><FF>");
    std::u16string wide = u"old";
    hexEscape(wide, "a\xE9", 2, true, u"\u2039", u"\u203A");
    EXPECT_EQ(wide, u"a\u2039E9\u203A");
    hexEscape(wide, nullptr, 0, true, u"x");
    EXPECT_EQ(wide, u"");
    expectError<std::invalid_argument>("invalid pointer", [&] { hexEscape(text, nullptr, 1, true); });
}

TEST(Hex, EscapesText) {
    EXPECT_EQ(hexEscapeText("\0\a\b\t\n\v\f\r\x01\x0E~\x7F\x80\\\""sv, true), R"(\0\a\b\t\n\v\f\r\x01\x0E~)"
                                                                              "\x7F\\x80\\\"");
    EXPECT_EQ(hexEscapeText("A \n"sv, false), R"(\x41\x20\n)");
    EXPECT_EQ(hexEscapeText(u"A\u00FF\u0100\U0001F600"sv, true), u"A\\xFF\\u0100\\uD83D\\uDE00");
    EXPECT_EQ(hexEscapeText(u"A"sv, false), uR"(\x41)");
}

TEST(Hex, SaysTheSameOfEveryByteInBothWidths) {
    for (int byte = 0; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        const std::string content(1, static_cast<char>(byte));
        for (const bool keepPrintable : {false, true}) {
            const bool kept = keepPrintable && byte >= 0x20 && byte <= 0x7F;
            std::string text;
            std::u16string wide;
            hexEscape(text, content.data(), 1, keepPrintable, "<", ">");
            hexEscape(wide, content.data(), 1, keepPrintable, u"<", u">");
            EXPECT_EQ(text, kept ? content : "<" + hex(content) + ">");
            EXPECT_EQ(wide, widened(text));
            EXPECT_EQ(hexEscapeText(widened(content), keepPrintable),
                      widened(hexEscapeText(content, keepPrintable)));
        }
    }
}

}  // namespace
}  // namespace owlkit
