#include <gtest/gtest.h>
#include <iconv.h>

#include <string>

#include "foundation/charset/single_byte_tables.h"

namespace owlkit {
namespace {

// The code unit that iconv gives for one byte; 0 when it refuses.
char16_t byIconv(iconv_t conversion, unsigned byte) {
    char in = static_cast<char>(byte);
    char out[8] = {};
    char* source = &in;
    char* target = out;
    std::size_t sourceLeft = 1;
    std::size_t targetLeft = sizeof out;
    iconv(conversion, nullptr, nullptr, nullptr, nullptr);
    // The second call fetches what Hebrew holds back for a following point.
    if (iconv(conversion, &source, &sourceLeft, &target, &targetLeft) != 0 ||
        iconv(conversion, nullptr, nullptr, &target, &targetLeft) != 0)
        return 0;
    EXPECT_EQ(targetLeft, sizeof out - 2);
    return static_cast<char16_t>(static_cast<unsigned char>(out[0]) | static_cast<unsigned char>(out[1])
                                                                          << 8);
}

// No byte differs: glibc's tables come from the same mapping files.
TEST(SingleByteTables, AgreeWithIconv) {
    for (CharsetCode charset = kCharsetAscii; charset < kCharsetCount; ++charset) {
        const SingleByteTable table(charset);
        std::string name(CharsetName(charset));
        if (name.starts_with("WINDOWS-") || name.starts_with("DOS-"))
            name = "CP" + name.substr(name.find('-') + 1);
        const iconv_t conversion = iconv_open("UTF-16LE", name.c_str());
        for (unsigned byte = 1; byte < 256; ++byte)
            EXPECT_EQ(table.decode(static_cast<std::uint8_t>(byte)), byIconv(conversion, byte))
                << name << ' ' << byte;
        iconv_close(conversion);
    }
}

}  // namespace
}  // namespace owlkit
