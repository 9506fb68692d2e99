// The standard alphabet held against the system's own base64 program.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>

#include "foundation/codec/base64.h"
#include "testing/temporary.h"
#include "testing/text.h"

namespace owlkit {
namespace {

using namespace test;

TEST(Base64Host, AgreesWithTheSystemsProgram) {
    std::mt19937 random(2);
    for (const std::size_t size :
         {0u, 1u, 2u, 3u, 56u, 57u, 58u, 113u, 114u, 12287u, 12288u, 12289u, 50000u}) {
        std::string bytes(size, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        const TemporaryFile file(bytes);
        const std::int32_t line = size % 2 == 0 ? 76 : 4;
        const std::string command = "base64 -w " + std::to_string(line) + " '" + file.path().string() + "'";
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
        std::string expected(100000, '\0');
        expected.resize(std::fread(expected.data(), 1, expected.size(), pipe.get()));
        MemoryStream source(bytes.data(), bytes.size()), decoded;
        std::string text;
        Base64Codec(line).encodeToString(source, text);
        Base64Codec(0, Base64Alphabet::Standard, Base64Strays::IgnoreLineBreaks)
            .decodeFromString(text, decoded);
        EXPECT_EQ(bytesOf(decoded), bytes);
        // The program also ends a last line that is not full.
        if (!text.empty() && text.back() != '\n')
            text += '\n';
        EXPECT_EQ(text, expected);
        std::erase(expected, '\n');
        EXPECT_EQ(base64(bytes), widened(expected));
    }
}

}  // namespace
}  // namespace owlkit
