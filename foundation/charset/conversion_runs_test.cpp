// The fast conversion held against the rule it must follow, one unit at a time.
#include "foundation/charset/conversion_runs.h"

#include <gtest/gtest.h>

#include <random>

#include "foundation/charset/convert.h"
#include "foundation/text/number.h"
#include "foundation/text/utf16.h"

namespace owlkit {
namespace {

// The length of the UTF-8 sequence at the start of `bytes` and its character; 0 when there is none.
std::size_t decodeSlowly(std::string_view bytes, char32_t& c) {
    const auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const std::size_t length = at(0) < 0x80       ? 1
                               : at(0) >> 5 == 6  ? 2
                               : at(0) >> 4 == 14 ? 3
                               : at(0) >> 3 == 30 ? 4
                                                  : 0;
    if (length == 0 || length > bytes.size())
        return 0;
    c = length == 1 ? at(0) : at(0) & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (at(i) >> 6 != 2)
            return 0;
        c = c << 6 | (at(i) & 0x3F);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    return c >= kLeast[length] && c <= 0x10FFFF ? length : 0;
}

std::u16string toWideSlowly(std::string_view text, CharsetCode charset, ErrorPolicy policy, bool& failed) {
    std::u16string out;
    failed = false;
    for (std::size_t length = 0; !text.empty(); text.remove_prefix(length == 0 ? 1 : length)) {
        const auto byte = static_cast<std::uint8_t>(text[0]);
        char32_t c = 0;
        if (charset == kCharsetUtf8)
            length = decodeSlowly(text, c);
        else
            length = (c = SingleByteTable(charset).decode(byte)) != 0;
        failed = failed || length == 0;
        if (c >= 0x10000 && length != 0)
            out.append({highSurrogateOf(c), lowSurrogateOf(c)});
        else if (length != 0)
            out += static_cast<char16_t>(c);
        else if (policy == ErrorPolicy::Empty || policy == ErrorPolicy::Stop)
            return policy == ErrorPolicy::Empty ? std::u16string() : out;
        else if (policy == ErrorPolicy::Hex)
            out += u"x" + formatNumber<char16_t>(byte, NumberFormat::UpperHex, 2);
        else if (policy == ErrorPolicy::KeepByte)
            out += static_cast<char16_t>(0xDC00 + byte);
        else if (policy != ErrorPolicy::Latin1)
            out += policy == ErrorPolicy::Fixed ? u'\uFFFD' : u'?';
        else if (charset == kCharsetUtf8)
            out += byte;
    }
    return out;
}

std::string encodeSlowly(char32_t c) {
    const auto byte = [](char32_t value) { return static_cast<char>(value); };
    const auto tail = [&](unsigned shift) { return byte(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80)
        return {byte(c)};
    if (c < 0x800)
        return {byte(0xC0 | c >> 6), tail(0)};
    if (c < 0x10000)
        return {byte(0xE0 | c >> 12), tail(6), tail(0)};
    return {byte(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
}

std::string toNarrowSlowly(std::u16string_view text, CharsetCode charset, ErrorPolicy policy, bool& failed) {
    std::string out;
    failed = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (isHighSurrogate(c) && i + 1 < text.size() && isLowSurrogate(text[i + 1]))
            c = fromSurrogates(c, text[++i]);
        const char byte = charset == kCharsetUtf8 || c > 0xFFFF
                              ? '\0'
                              : static_cast<char>(SingleByteTable(charset).encode(static_cast<char16_t>(c)));
        const bool keptByte = policy == ErrorPolicy::KeepByte && c >= 0xDC80 && c <= 0xDCFF;
        const bool fails = charset == kCharsetUtf8 ? keptByte : byte == 0;
        failed = failed || fails;
        if (!fails)
            out += charset == kCharsetUtf8 ? encodeSlowly(c) : std::string(1, byte);
        else if (policy == ErrorPolicy::Empty || policy == ErrorPolicy::Stop)
            return policy == ErrorPolicy::Empty ? std::string() : out;
        else if (policy == ErrorPolicy::Hex)
            out += "x" + formatNumber<char>(c, NumberFormat::UpperHex, c > 0xFFFF ? 6 : 4);
        else if (policy == ErrorPolicy::Replace || policy == ErrorPolicy::Fixed)
            out += policy == ErrorPolicy::Fixed ? '\x1A' : '?';
        else if (policy == ErrorPolicy::KeepByte && c >= 0xDC00 && c <= 0xDCFF)
            out += static_cast<char>(c & 0xFF);
    }
    return out;
}

constexpr CharsetCode kCharsets[] = {kCharsetUtf8, kCharsetAscii, kCharsetWindows1252, kCharsetIso8859_7};

void expectSame(std::string_view bytes, CharsetCode charset, int policy) {
    bool failed = false;
    bool slowFailed = false;
    const std::u16string slow = toWideSlowly(bytes, charset, ErrorPolicy(policy), slowFailed);
    ASSERT_EQ(ToWide(bytes, charset, ErrorPolicy(policy), u'?', &failed), slow) << charset << ' ' << policy;
    ASSERT_EQ(failed, slowFailed) << charset << ' ' << policy;
}

void expectSame(std::u16string_view units, CharsetCode charset, int policy) {
    bool failed = false;
    bool slowFailed = false;
    const std::string slow = toNarrowSlowly(units, charset, ErrorPolicy(policy), slowFailed);
    ASSERT_EQ(ToNarrow(units, charset, ErrorPolicy(policy), '?', &failed), slow) << charset << ' ' << policy;
    ASSERT_EQ(failed, slowFailed) << charset << ' ' << policy;
}

template <class Text>
void expectSameUnderEveryPolicy(const Text& text) {
    for (const CharsetCode charset : kCharsets)
        for (int policy = 0; policy <= 6; ++policy)
            ASSERT_NO_FATAL_FAILURE(expectSame(text, charset, policy));
}

TEST(ConversionRuns, FollowTheRuleForTheCharactersAtEveryPlaceInABlock) {
    std::string bytes;
    std::u16string units;
    for (char32_t c = 0; c <= 0x10FFFF; c += c < 0x10000 ? 1 : 61) {
        bytes += encodeSlowly(c);
        if (c < 0x10000)
            units += static_cast<char16_t>(c);
        else
            units.append({highSurrogateOf(c), lowSurrogateOf(c)});
        if (c % 5 == 0) {  // moves the characters through the blocks of 16
            bytes += "ascii text";
            units += u"ascii text";
        }
    }
    for (const CharsetCode charset : kCharsets) {
        ASSERT_NO_FATAL_FAILURE(expectSame(bytes, charset, 5));
        ASSERT_NO_FATAL_FAILURE(expectSame(units, charset, 5));
    }
}

TEST(ConversionRuns, FollowTheRuleAtEveryCut) {
    const std::string bytes =
        "A quick note: \xC3\xA9 \xE2\x82\xAC\xED\xA0\x80 \xF0\x9F\x98\x80\xC0\x80 text of more than 16";
    const std::u16string units = ToWide(bytes, kCharsetUtf8, ErrorPolicy::KeepByte) + u"\xDBFF";
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
        SCOPED_TRACE(cut);
        ASSERT_NO_FATAL_FAILURE(expectSameUnderEveryPolicy(bytes.substr(0, cut)));
        ASSERT_NO_FATAL_FAILURE(expectSameUnderEveryPolicy(bytes.substr(cut)));
        ASSERT_NO_FATAL_FAILURE(expectSameUnderEveryPolicy(units.substr(0, cut)));
    }
}

TEST(ConversionRuns, FollowTheRuleUnderRandomDamage) {
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        std::string bytes;
        for (std::size_t wanted = round % 30 == 0 ? 9000 : random() % 200; bytes.size() < wanted;)
            bytes += encodeSlowly(random() >> (random() % 25 + 11) & 0x10FFFF);
        for (std::size_t damages = random() % 4; damages > 0 && !bytes.empty(); --damages)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        ASSERT_NO_FATAL_FAILURE(expectSameUnderEveryPolicy(bytes));
        std::u16string units = ToWide(bytes, kCharsetUtf8);
        for (std::size_t damages = random() % 4; damages > 0 && !units.empty(); --damages)
            units[random() % units.size()] = static_cast<char16_t>(0xD700 + random() % 0x900);
        ASSERT_NO_FATAL_FAILURE(expectSameUnderEveryPolicy(units));
    }
}

}  // namespace
}  // namespace owlkit
