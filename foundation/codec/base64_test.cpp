#include "foundation/codec/base64.h"

#include <random>
#include <stdexcept>

#include "foundation/stream/test_stream.h"

namespace owlkit {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string encoded(const std::string& bytes, std::int32_t line, std::uint32_t alphabet,
                    std::int64_t count = -1) {
    MemoryStream source(bytes.data(), bytes.size());
    std::string text = "old";
    const std::size_t written = Base64Codec(line, alphabet).encodeToString(source, text, count);
    EXPECT_EQ(written, text.size());
    return text;
}

std::string decoded(std::string_view text, std::uint32_t alphabet, std::uint32_t policy) {
    MemoryStream target;
    const std::int64_t written = Base64Codec(0, alphabet, policy).decodeFromString(text, target);
    EXPECT_EQ(written, target.size());
    return {reinterpret_cast<const char*>(target.data()), static_cast<std::size_t>(target.size())};
}

TEST(Base64, Encodes) {
    const struct {
        std::string bytes;
        std::uint32_t alphabet;
        const char* text;
    } cases[] = {
        {"Man", 0, "TWFu"}, {"Ma", 0, "TWE="},      {"M", 0, "TQ=="},        {"", 0, ""},
        {"Ma", 1, "TWE"},   {"\xFB\xFF", 1, "-_8"}, {"\xFB\xFF", 0, "+/8="}, {"\0\0\0M"s, 0, "AAAATQ=="}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(encoded(c.bytes, 0, c.alphabet), c.text);
        EXPECT_EQ(decoded(c.text, c.alphabet, kRefuseStrays), c.bytes);
    }
    EXPECT_EQ(encoded("Many", 0, 0, 0) + encoded("Many", 0, 0, 2) + encoded("Man", 0, 0, 9), "TWE=TWFu");
    EXPECT_EQ(encoded(std::string(57, '\0'), 76, 0), std::string(76, 'A') + "\n");
    EXPECT_EQ(encoded("ManMa", 5, 0) + encoded("ManM", 1, 1), "TWFuTWE=\nTWFuTQ");
    MemoryStream source("M\xFF", 2);
    std::u16string wide;
    EXPECT_EQ(Base64Codec().encodeToString(source, wide), 4u);
    EXPECT_EQ(wide, u"Tf8=");
}

TEST(Base64, Decodes) {
    const struct {
        const char* text;
        std::uint32_t alphabet, policy;
        const char* bytes;  // null for "parse error"
    } cases[] = {{"TWFu====", 0, 2, "Man"}, {"TWFuT", 0, 2, "ManL"},    {"T", 0, 2, "L"},
                 {"TQ==TWFu", 0, 2, "M"},   {"T=WFu", 0, 2, "Man"},     {"TW\r\nFu", 0, 1, "Man"},
                 {"TW Fu", 0, 1, nullptr},  {"TW Fu\x80", 0, 0, "Man"}, {"TW\nFu", 0, 2, nullptr},
                 {"+_8", 1, 2, nullptr},    {"-/8", 0, 1, nullptr},     {"-+_/8", 0, 0, "\xFB\xFF"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const auto decode = [&] { return decoded(c.text, c.alphabet, c.policy); };
        if (c.bytes == nullptr)
            expectError<std::runtime_error>("parse error", decode);
        else
            EXPECT_EQ(decode(), c.bytes);
    }
    MemoryStream source("TWFuTWFu*", 9), target;
    EXPECT_EQ(Base64Codec().decode(source, target, 6), 4);  // a limit counts characters
    EXPECT_EQ(Base64Codec().decode(source, target, 0), 0);
    source.seek(0, kFromStart);
    EXPECT_THROW(Base64Codec(0, 0, 2).decode(source, target, -1), std::runtime_error);
    EXPECT_EQ(target.size(), 4 + 6);  // what stands before the bad character is written
    EXPECT_EQ(Base64Codec().decodeFromString(u"TW\u0146\u2028Fu"sv, target), 3);
    const auto strict = [&] { Base64Codec(0, 0, 1).decodeFromString(u"TWFu\x80"sv, target); };
    expectError<std::runtime_error>("parse error", strict);
    EXPECT_EQ(target.size(), 13);
}

TEST(Base64, EverythingComesBack) {
    std::mt19937 random(1);
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        std::string bytes(random() % (round % 50 == 0 ? 40000 : 100), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        const auto line = static_cast<std::int32_t>(random() % 80);
        for (const std::uint32_t alphabet : {kBase64Standard, kBase64Url})
            EXPECT_EQ(decoded(encoded(bytes, line, alphabet), alphabet, kIgnoreLineBreaks), bytes);
    }
}

}  // namespace
}  // namespace owlkit
