#include <gtest/gtest.h>

#include "foundation/charset/charset.h"
#include "foundation/charset/single_byte_tables.h"
#include "platform/win32/win32_api.h"

namespace owlkit {
namespace {

char16_t byWindows(std::uint32_t codePage, unsigned byte) {
    const char in = static_cast<char>(byte);
    char16_t out = 0;
    return MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, &in, 1, platform::wide(&out), 1) == 1 ? out
                                                                                                     : u'\0';
}

// What Windows has where its own tables are known to differ from the published ones; the published unit
// elsewhere.
char16_t expectedOfWindows(std::uint32_t codePage, unsigned byte, char16_t published) {
    // Takes the low seven bits, but refuses the byte that would so become "?", its default character.
    if (codePage == 20127 && byte >= 0x80)
        return byte == 0xBF ? u'\0' : static_cast<char16_t>(byte - 0x80);
    if (codePage == 1255 && byte == 0xCA)
        return u'\u05BA';  // assigned after the mapping file was published
    if (codePage >= 1250 && codePage <= 1256 && published == 0 && byte < 0xA0)
        return static_cast<char16_t>(byte);  // undefined bytes of the C1 range pass as C1 controls
    if (codePage == 28597 && (byte == 0xA1 || byte == 0xA2))
        return byte == 0xA1 ? u'\u02BD' : u'\u02BC';  // still the edition of 1987, as in the next line
    if (codePage == 28597 && (byte == 0xA4 || byte == 0xA5 || byte == 0xAA))
        return 0;
    if (codePage == 28598 && byte == 0xAF)
        return u'\u203E';  // still the edition of 1988, as in the next line
    return codePage == 28598 && (byte == 0xFD || byte == 0xFE) ? u'\0' : published;
}

TEST(SingleByteTables, AgreeWithWindows) {
    for (const std::uint32_t codePage : {20127, 28591, 28592, 28593, 28594, 28595, 28596, 28597, 28598, 28599,
                                         28605, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 850}) {
        const SingleByteTable table(CharsetFromCodePage(codePage));
        for (unsigned byte = 1; byte < 256; ++byte) {
            const char16_t published = table.decode(static_cast<std::uint8_t>(byte));
            EXPECT_EQ(byWindows(codePage, byte), expectedOfWindows(codePage, byte, published))
                << codePage << ' ' << byte;
        }
    }
}

}  // namespace
}  // namespace owlkit
