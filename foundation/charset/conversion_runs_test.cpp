// A text shorter than a block is converted character by character. A long one, most of which goes through in
// blocks, must give what its pieces give one by one.
#include "foundation/charset/conversion_runs.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "foundation/charset/convert.h"

namespace owlkit {
namespace {

std::u16string converted(std::string_view bytes, CharsetCode charset, ErrorPolicy policy, bool& failed) {
    return ToWide(bytes, charset, policy, u'!', &failed);
}
std::string converted(std::u16string_view units, CharsetCode charset, ErrorPolicy policy, bool& failed) {
    return ToNarrow(units, charset, policy, '!', &failed);
}

// Each piece but the last ends in ASCII, which no sequence of bytes and no pair of surrogates reaches over.
template <class Text>
void expectAsItsPieces(const std::vector<Text>& pieces, int first = 0, int last = 6) {
    for (const CharsetCode charset : {kCharsetUtf8, kCharsetAscii, kCharsetWindows1252, kCharsetIso8859_7}) {
        for (int number = first; number <= last; ++number) {
            const auto policy = ErrorPolicy(number);
            const bool ends = policy == ErrorPolicy::Stop || policy == ErrorPolicy::Empty;
            Text whole;
            decltype(converted(whole, charset, policy, std::declval<bool&>())) expected;
            bool expectedFailed = false;
            for (const Text& piece : pieces) {
                bool failed = false;
                whole += piece;
                if (!ends || !expectedFailed)
                    expected += converted(piece, charset, policy, failed);
                expectedFailed = expectedFailed || failed;
            }
            if (policy == ErrorPolicy::Empty && expectedFailed)
                expected.clear();
            bool failed = false;
            ASSERT_TRUE(converted(whole, charset, policy, failed) == expected) << charset << ' ' << number;
            ASSERT_EQ(failed, expectedFailed) << charset << ' ' << number;
        }
    }
}

// Each piece, and all of them in one text.
void expectToComeBackWhereNothingFails(const std::vector<std::string>& pieces) {
    std::string whole;
    bool wholeComesBack = true;
    for (const std::string& piece : pieces) {
        bool failed = false;
        const std::u16string wide = ToWide(piece, kCharsetUtf8, ErrorPolicy::Replace, u'!', &failed);
        for (std::size_t at = piece.find('\xED'); at < piece.size() - 1; at = piece.find('\xED', at + 1))
            failed = failed || static_cast<unsigned char>(piece[at + 1]) >= 0xA0;  // a surrogate
        ASSERT_EQ(comesBackFromWide(piece), !failed);
        ASSERT_TRUE(failed || ToNarrow(wide, kCharsetUtf8) == piece);
        wholeComesBack = wholeComesBack && !failed;
        ASSERT_EQ(comesBackFromWide(whole += piece), wholeComesBack);
    }
    std::u16string appended = u"before";
    appendUtf8(appended, whole);
    ASSERT_TRUE(!wholeComesBack || appended == u"before" + ToWide(whole, kCharsetUtf8));
}

TEST(ConversionRuns, TakeEveryCharacterAtEveryPlaceInABlock) {
    std::mt19937 random(2);
    std::vector<std::string> bytes;
    std::vector<std::u16string> units;
    std::u16string piece;
    for (char32_t c = 0; c <= 0x10FFFF; c += c < 0x10000 ? 1 : 61) {
        if (c > 0xFFFF)
            piece += static_cast<char16_t>(0xD7C0 + (c >> 10));
        piece += static_cast<char16_t>(c > 0xFFFF ? 0xDC00 + (c & 0x3FF) : c);
        if (random() % 3 != 0)
            continue;
        piece.append(random() % 4 + 1, u'a');  // moves the characters through the blocks
        units.push_back(piece);
        bytes.push_back(ToNarrow(piece, kCharsetUtf8));
        ASSERT_EQ(ToWide(bytes.back(), kCharsetUtf8), piece);
        piece.clear();
    }
    ASSERT_NO_FATAL_FAILURE(expectAsItsPieces(bytes, 5, 5));
    ASSERT_NO_FATAL_FAILURE(expectAsItsPieces(units, 5, 5));
    for (const std::string& each : bytes)
        ASSERT_NO_FATAL_FAILURE(expectToComeBackWhereNothingFails({each, std::string(400, 'a'), each}));
}

TEST(ConversionRuns, StopAtEveryDamage) {
    std::mt19937 random(1);
    for (int round = 0; round < 80; ++round) {
        SCOPED_TRACE(round);
        std::vector<std::string> bytes;
        std::vector<std::u16string> units;
        for (std::size_t left = round % 20 == 0 ? 900 : random() % 12; left > 0; --left) {
            std::u16string unit(random() % 15, u'a');
            for (char16_t& c : unit)
                c = static_cast<char16_t>(random() % 3 == 0 ? 0xD700 + random() % 0x900
                                                            : random() >> (16 + random() % 10));
            std::string byte = ToNarrow(unit + u"...", kCharsetUtf8).substr(random() % 3, random() % 15);
            if (random() % 8 == 0 && !byte.empty())
                byte[random() % byte.size()] = static_cast<char>(random());
            bytes.push_back(byte + (left == 1 ? "" : "a"));
            units.push_back(unit + (left == 1 ? u"" : u"a"));
        }
        ASSERT_NO_FATAL_FAILURE(expectAsItsPieces(bytes));
        ASSERT_NO_FATAL_FAILURE(expectToComeBackWhereNothingFails(bytes));
        ASSERT_NO_FATAL_FAILURE(expectAsItsPieces(units));
    }
}

}  // namespace
}  // namespace owlkit
