#include "foundation/codec/base64.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

#include "testing/errors.h"
#include "testing/plain_stream.h"
#include "testing/text.h"

namespace owlkit {
namespace {

using namespace test;

using namespace std::string_literals;
using namespace std::string_view_literals;

using enum Base64Alphabet;
using enum Base64Strays;

std::string encoded(const std::string& bytes, std::int32_t line, Base64Alphabet alphabet,
                    std::int64_t count = -1) {
    MemoryStream source(bytes.data(), bytes.size());
    std::string text = "old";
    const std::size_t written = Base64Codec(line, alphabet).encodeToString(source, text, count);
    EXPECT_EQ(written, text.size());
    return text;
}

std::string decoded(std::string_view text, Base64Alphabet alphabet, Base64Strays strays) {
    MemoryStream target;
    const std::int64_t written = Base64Codec(0, alphabet, strays).decodeFromString(text, target);
    EXPECT_EQ(written, target.size());
    return bytesOf(target);
}

TEST(Base64, Encodes) {
    const struct Case {
        std::string bytes;
        Base64Alphabet alphabet;
        const char* text;
    } cases[] = {{"Man", Standard, "TWFu"},
                 {"Ma", Standard, "TWE="},
                 {"M", Standard, "TQ=="},
                 {"", Standard, ""},
                 {"Ma", Url, "TWE"},
                 {"\xFB\xFF", Url, "-_8"},
                 {"\xFB\xFF", Standard, "+/8="},
                 {"\0\0\0M"s, Standard, "AAAATQ=="}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(encoded(c.bytes, 0, c.alphabet), c.text);
        EXPECT_EQ(decoded(c.text, c.alphabet, Refuse), c.bytes);
    }
    EXPECT_EQ(
        encoded("Many", 0, Standard, 0) + encoded("Many", 0, Standard, 2) + encoded("Man", 0, Standard, 9),
        "TWE=TWFu");
    EXPECT_EQ(encoded(std::string(57, '\0'), 76, Standard), std::string(76, 'A') + "\n");
    EXPECT_EQ(encoded("ManMa", 5, Standard) + encoded("ManM", 1, Url), "TWFuTWE=\nTWFuTQ");
    MemoryStream source("M\xFF", 2);
    std::u16string wide;
    EXPECT_EQ(Base64Codec().encodeToString(source, wide), 4u);
    EXPECT_EQ(wide, u"Tf8=");
}

TEST(Base64, EncodesAStreamThatGivesLittleAtATime) {
    for (const auto& [most, expected] : {std::pair(5, "TWFueXMgbWFu"), std::pair(2, "TWE=")}) {
        SCOPED_TRACE(most);
        PlainStream source("Manys man", static_cast<std::size_t>(most));
        std::string text;
        Base64Codec().encodeToString(source, text);
        EXPECT_EQ(text, expected);
    }
}

TEST(Base64, Decodes) {
    const struct Case {
        const char* text;
        Base64Alphabet alphabet;
        Base64Strays strays;
        const char* bytes;  // null for "parse error"
    } cases[] = {{"TWFu====", Standard, Refuse, "Man"},
                 {"TWFuT", Standard, Refuse, "ManL"},
                 {"T", Standard, Refuse, "L"},
                 {"TQ==TWFu", Standard, Refuse, "M"},
                 {"T=WFu", Standard, Refuse, "Man"},
                 {"TW\r\nFu", Standard, IgnoreLineBreaks, "Man"},
                 {"TW Fu", Standard, IgnoreLineBreaks, nullptr},
                 {"TW Fu\x80", Standard, Ignore, "Man"},
                 {"TW\nFu", Standard, Refuse, nullptr},
                 {"+_8", Url, Refuse, nullptr},
                 {"-/8", Standard, IgnoreLineBreaks, nullptr},
                 {"-+_/8", Standard, Ignore, "\xFB\xFF"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const auto decode = [&] { return decoded(c.text, c.alphabet, c.strays); };
        if (c.bytes == nullptr)
            expectError<std::runtime_error>("parse error", decode);
        else
            EXPECT_EQ(decode(), c.bytes);
    }
    MemoryStream source("TWFuTWFu*", 9), target;
    EXPECT_EQ(Base64Codec().decode(source, target, 6), 4);  // a limit counts characters
    EXPECT_EQ(Base64Codec().decode(source, target, 0), 0);
    ASSERT_TRUE(source.seek(0, SeekOrigin::Start));
    EXPECT_THROW(Base64Codec(0, Standard, Refuse).decode(source, target, -1), std::runtime_error);
    EXPECT_EQ(target.size(), 4 + 6);  // what stands before the bad character is written
    EXPECT_EQ(Base64Codec().decodeFromString(u"TW\u0146\u2028Fu"sv, target), 3);
    const auto strict = [&] {
        Base64Codec(0, Standard, IgnoreLineBreaks).decodeFromString(u"TWFu\x80"sv, target);
    };
    expectError<std::runtime_error>("parse error", strict);
    EXPECT_EQ(target.size(), 13);
}

TEST(Base64, TakesATextAsAWholeOrNotAtAll) {
    const struct Case {
        std::u16string_view text;
        std::optional<std::string> bytes;
    } cases[] = {{u"", ""},          {u"TWFu", "Man"},           {u"TQ==", "M"},
                 {u"TQ", "M"},       {u"TWFuT", "ManL"},         {u"QQA=!!", {}},
                 {u"TQ==TWFu", {}},  {u"TWFu TWFu", {}},         {u"TW\n", {}},
                 {u"TWF\u0146", {}}, {u"TWFuTWFuTWFu\u5754", {}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(c.text)));
        EXPECT_EQ(fromBase64(c.text), c.bytes);
    }
    EXPECT_EQ(base64("ManMa"), u"TWFuTWE=");
}

// Strays between blocks, groups and padding, in any block of the source.
TEST(Base64, StopsBehindThePaddingWhereverItStands) {
    for (const std::size_t before : {0u, 4u, 12284u, 12288u, 40000u}) {
        SCOPED_TRACE(before);
        const std::string text = std::string(before, 'A') + "TQ=*=rest";
        MemoryStream source(text.data(), text.size());
        MemoryStream target;
        EXPECT_EQ(Base64Codec().decode(source, target, -1), static_cast<std::int64_t>(before / 4 * 3 + 1));
        EXPECT_EQ(source.position(), static_cast<std::int64_t>(before + 3));
    }
}

}  // namespace
}  // namespace owlkit
