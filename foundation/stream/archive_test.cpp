#include "foundation/stream/archive.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>
#include <vector>

#include "foundation/charset/convert.h"
#include "testing/streams.h"

namespace owlkit {
namespace {

using namespace test;

using namespace std::string_literals;
using namespace std::string_view_literals;

class ArchiveTest : public StreamTest {
  protected:
    // Writes and reads `value` in every byte order; `bigEndian` are its bytes in hexadecimal digits. Then
    // reads each beginning of it.
    template <class T, class Write, class Read>
    void expectScalar(const char* name, T value, const std::string& bigEndian, Write write, Read read) {
        SCOPED_TRACE(name);
        std::string littleEndian;
        for (std::size_t i = bigEndian.size(); i > 0; i -= 2)
            littleEndian += bigEndian.substr(i - 2, 2);
        const std::size_t width = bigEndian.size() / 2;
        for (const ByteOrder order : {ByteOrder::Native, ByteOrder::BigEndian, ByteOrder::LittleEndian}) {
            TestStream stream(GetParam());
            stream->setByteOrder(order);
            EXPECT_EQ(write(*stream, value), width);
            EXPECT_EQ(hex(stream.content()), order == ByteOrder::BigEndian ? bigEndian : littleEndian);
            ASSERT_TRUE(stream->seek(0, SeekOrigin::Start));
            T back{};
            EXPECT_EQ(read(*stream, back), width);
            EXPECT_EQ(back, value);
            for (std::size_t cut = 0; cut < width; ++cut) {
                TestStream part(GetParam(), stream.content().substr(0, cut));
                EXPECT_EQ(read(*part, back), cut);
                EXPECT_TRUE(part->atEnd());
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, ArchiveTest, testing::Values(StreamKind::Memory, StreamKind::File), kindName);

TEST_P(ArchiveTest, ScalarsHaveTheirLayoutAndComeBack) {
    using Out = ByteStream&;
    const auto write32 = [](Out s, const auto& v) { return s.writeInt32(v); };
    const auto write16 = [](Out s, const auto& v) { return s.writeInt16(v); };
    const auto write8 = [](Out s, const auto& v) { return s.writeByte(v); };
    const auto write64 = [](Out s, const auto& v) { return s.writeInt64(v); };
    const auto writeFloating = [](Out s, const auto& v) { return s.writeFloating(v); };
    const auto writeLong = [](Out s, long double v) { return s.writeFloating(static_cast<double>(v)); };
    const auto value8 = [](Out s, auto v) { return s.writeValue8(static_cast<std::uint8_t>(v)); };
    const auto value16 = [](Out s, auto v) { return s.writeValue16(static_cast<std::uint16_t>(v)); };
    const auto value32 = [](Out s, auto v) { return s.writeValue32(static_cast<std::uint32_t>(v)); };
    const auto value64 = [](Out s, auto v) { return s.writeValue64(v); };
    const auto read32 = [](Out s, auto& v) { return s.readInt32(v); };
    const auto read16 = [](Out s, auto& v) { return s.readInt16(v); };
    const auto read8 = [](Out s, auto& v) { return s.readByte(v); };
    const auto read64 = [](Out s, auto& v) { return s.readInt64(v); };
    const auto readUnit16 = [](Out s, auto& v) { return s.readUnit16(v); };
    const auto readUnit32 = [](Out s, auto& v) { return s.readUnit32(v); };
    const auto readFloating = [](Out s, auto& v) { return s.readFloating(v); };
    expectScalar("int", -2, "FFFFFFFE", write32, read32);
    expectScalar("unsigned", 0x01020304u, "01020304", write32, read32);
    expectScalar("long", -16909060L, "FEFDFCFC", write32, read32);
    expectScalar("unsigned long", 0xFEDCBA98ul, "FEDCBA98", write32, read32);
    expectScalar("short", std::int16_t{-3}, "FFFD", write16, read16);
    expectScalar("unsigned short", std::uint16_t{0xABCD}, "ABCD", write16, read16);
    expectScalar("bool", true, "01", value8, read8);
    expectScalar("char", '\xE9', "E9", value8, read8);
    expectScalar("unsigned char", std::uint8_t{0x7F}, "7F", write8, read8);
    expectScalar("char16_t", u'\u20AC', "20AC", value16, readUnit16);
    expectScalar("Code16", Code16{0x1234}, "1234", value16, readUnit16);
    expectScalar("char32_t", U'\U0001F600', "0001F600", value32, readUnit32);
    expectScalar("Code32", Code32{0x89ABCDEF}, "89ABCDEF", value32, readUnit32);
    expectScalar("long long", -2LL, "FFFFFFFFFFFFFFFE", write64, read64);
    expectScalar("unsigned long long", 0x0102030405060708ull, "0102030405060708", value64, read64);
    expectScalar("double", -1.5, "BFF8000000000000", writeFloating, readFloating);
    expectScalar("float", 0.15625f, "3E200000", writeFloating, readFloating);
    expectScalar("long double", 1.0L, "3FF0000000000000", writeLong, readFloating);
}

TEST_P(ArchiveTest, AShortReadLeavesTheRestOfTheItem) {
    TestStream stream(GetParam(), "\x02\x01\x02");
    bool flag;  // whatever it holds, it is not looked at
    std::memset(&flag, 0x5A, sizeof(flag));
    EXPECT_EQ(stream->readByte(flag), 1u);
    EXPECT_TRUE(flag);
    unsigned value = 0xAABBCCDD;
    EXPECT_EQ(stream->readInt32(value), 2u);
    EXPECT_EQ(value, 0xAABB0201u);
    EXPECT_EQ(stream->readByte(flag), 0u);
    EXPECT_TRUE(flag);
    EXPECT_TRUE(stream->isSeekable());
    EXPECT_FALSE((*stream).Archive::isSeekable()) << "what is no stream of bytes with a position";
}

TEST_P(ArchiveTest, RawStrings) {
    for (const ByteOrder order : {ByteOrder::BigEndian, ByteOrder::LittleEndian}) {
        TestStream stream(GetParam());
        stream->setByteOrder(order);
        stream->writeRaw("abc"sv);
        EXPECT_EQ(stream->writeRaw(""sv), 4u);
        EXPECT_EQ(stream->writeRaw(u"wide"sv), 8u);
        const char* bytes = order == ByteOrder::BigEndian ? "00000003616263000000000000000477696465"
                                                          : "03000000616263000000000400000077696465";
        EXPECT_EQ(hex(stream.content()), bytes);
        ASSERT_TRUE(stream->seek(0, SeekOrigin::Start));
        std::string text = "x";
        std::u16string wide;
        EXPECT_EQ(stream->readRaw(text, 3), 7u);
        EXPECT_EQ(text, "abc");
        EXPECT_EQ(stream->readRaw(text, 0), 4u);
        EXPECT_EQ(text, "");
        EXPECT_EQ(stream->readRaw(wide, 4), 8u);
        EXPECT_EQ(wide, u"wide");
        expectError<std::length_error>("size error", [&] { stream->writeRaw(std::string_view("", ~0u)); });
    }
    std::string text = "x";
    TestStream large(GetParam(), "\xE8\x03\0\0"s + std::string(1000, 'n'));
    expectError<std::runtime_error>("read string size too large", [&] { large->readRaw(text, 999); });
    EXPECT_EQ(text, "");
    TestStream tiny(GetParam(), "abc");
    EXPECT_EQ(tiny->readRaw(text, 100), 0u);
    EXPECT_EQ(tiny->position(), 0);
    TestStream cut(GetParam(), "\xFE\xFF\xFF\xFFyz");  // promises more than there is
    EXPECT_EQ(cut->readRaw(text, ~0u), 6u);
    EXPECT_EQ(text, "yz");
    EXPECT_LT(text.capacity(), 1000u);  // the promise costs no memory
}

TEST_P(ArchiveTest, TextIsWrittenInTheEncoding) {
    const struct Case {
        const char* name;
        TextEncoding encoding;
        ByteOrder order;
        StringTerminator terminator;
        CharsetCode charset;
        const char* bytes;
    } cases[] = {{"none", TextEncoding::None, ByteOrder::BigEndian, StringTerminator::CrLf, 0,
                  "4100E900AC203DD800DE0D000A00"},
                 {"UTF-8", TextEncoding::Utf8, ByteOrder::BigEndian, StringTerminator::CrLf, 0,
                  "41C3A9E282ACF09F98800D0A"},
                 {"UTF-16 little", TextEncoding::Utf16, ByteOrder::Native, StringTerminator::Lf, 0,
                  "4100E900AC203DD800DE0A00"},
                 {"UTF-16 big", TextEncoding::Utf16, ByteOrder::BigEndian, StringTerminator::CrLfAlias, 0,
                  "004100E920ACD83DDE00000D000A"},
                 {"UTF-32 little", TextEncoding::Utf32, ByteOrder::LittleEndian, StringTerminator::Cr, 0,
                  "41000000E9000000AC20000000F601000D000000"},
                 {"UTF-32 big", TextEncoding::Utf32, ByteOrder::BigEndian, StringTerminator::Nul, 0,
                  "00000041000000E9000020AC0001F60000000000"},
                 {"WINDOWS-1252", TextEncoding::Charset, ByteOrder::Native, StringTerminator::None,
                  kCharsetWindows1252, "41E9803F"},
                 {"ASCII", TextEncoding::Charset, ByteOrder::Native, StringTerminator::Nul, kCharsetAscii,
                  "413F3F3F00"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TestStream stream(GetParam(), c.encoding, c.order, c.terminator, c.charset);
        const std::int64_t written = stream->writeText(u"A\u00E9\u20AC\U0001F600"sv);
        EXPECT_EQ(written, stream->size());
        EXPECT_EQ(hex(stream.content()), c.bytes);
    }
    TestStream stream(GetParam());
    stream->setStringTerminator(StringTerminator::CrLf);
    EXPECT_EQ(stream->writeText("\xFF\x80"sv), 4);  // narrow text, unconverted
    stream->setTextEncoding(TextEncoding::Utf16);
    EXPECT_EQ(stream->writeText("line"sv), 12);
    EXPECT_EQ(hex(stream.content()), "FF800D0A6C0069006E0065000D000A00");
}

TEST_P(ArchiveTest, TextIsReadUpToItsTerminator) {
    const struct Case {
        const char* name;
        TextEncoding encoding;
        ByteOrder order;
        StringTerminator terminator;
        std::string bytes;
        std::int64_t maxCount;
        std::u16string text;
        std::int64_t consumed;
    } cases[] = {
        {"NUL", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Nul, "a\0b"s, -1, u"a", 2},
        {"CR LF read as LF", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Lf, "line\r\nx", -1,
         u"line", 6},
        {"one CR goes, one stays", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::CrLfAlias,
         "a\r\r\n", -1, u"a\r", 4},
        {"a CR before no LF stays", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Lf, "a\r", -1,
         u"a\r", 2},
        {"CR", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Cr, "a\nb\rc", -1, u"a\nb", 4},
        {"no terminator", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::None, "a\0\r\n"s, -1,
         u"a\0\r\n"s, 4},
        {"empty line", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Lf, "\nx", -1, u"", 1},
        {"count before the end", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Lf, "abc\n", 2,
         u"ab", 2},
        {"count takes the terminator", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Lf, "ab\n", 3,
         u"ab", 3},
        {"bad UTF-8", TextEncoding::Utf8, ByteOrder::Native, StringTerminator::Lf, "a\xC0\n", -1, u"a?", 3},
        {"UTF-16 big, LF", TextEncoding::Utf16, ByteOrder::BigEndian, StringTerminator::Lf,
         "\x0A\x0A\0\x0D\0\x0A"s, -1, u"\u0A0A", 3},
        {"UTF-16 little, byte 0A inside", TextEncoding::Utf16, ByteOrder::Native, StringTerminator::Lf,
         "\0\x0A\x0A\0"s, -1, u"\u0A00", 2},
        {"UTF-16, unit cut by the end", TextEncoding::Utf16, ByteOrder::Native, StringTerminator::Lf, "a\0b"s,
         -1, u"a", 1},
        {"UTF-32", TextEncoding::Utf32, ByteOrder::BigEndian, StringTerminator::Nul,
         "\0\x01\xF6\0\0\x11\0\0\0\0\0\0"s, -1, u"\U0001F600?", 3},
        {"none", TextEncoding::None, ByteOrder::BigEndian, StringTerminator::Lf, "a\0\r\0\n\0"s, -1, u"a", 3},
        {"charset", TextEncoding::Charset, ByteOrder::Native, StringTerminator::Lf, "\x80\xE9\n", -1,
         u"\u20AC\u00E9", 3}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TestStream stream(GetParam(), c.encoding, c.order, c.terminator, kCharsetWindows1252, c.bytes);
        std::u16string text = u"old";
        EXPECT_EQ(stream->readText(text, c.maxCount), c.consumed);
        EXPECT_EQ(text, c.text);
    }
}

// The charset's own characters, or all of Unicode with lone surrogates; no terminators.
std::u16string randomText(std::mt19937& random, TextEncoding encoding, CharsetCode charset) {
    std::u16string text;
    for (std::size_t left = random() % 20; left > 0; --left) {
        const std::uint32_t number = static_cast<std::uint32_t>(random());
        const bool ascii = charset == kCharsetSystem || charset == kCharsetUtf8;
        if (encoding == TextEncoding::Charset)
            text += ToWide(std::string(1, static_cast<char>(32 + number % (ascii ? 95 : 224))), charset,
                           ErrorPolicy::Stop);
        else
            text +=
                static_cast<char16_t>(number % 4 == 0 ? 0xD800 + number / 4 % 0x800 : 32 + number % 0xFFE0);
    }
    return text;
}

TEST_P(ArchiveTest, TextsComeBackInEveryCombinationOfSettings) {
    std::mt19937 random(4);
    TestStream stream(GetParam());
    for (std::uint32_t number = 0; number < 5 * 3 * 6 * 22; ++number) {
        SCOPED_TRACE(number);
        const TextEncoding encoding{number % 5};
        const ByteOrder order{number / 5 % 3};
        const StringTerminator terminator{number / 15 % 6};
        const CharsetCode charset = number / 90;
        stream->copySettings(*TestStream(StreamKind::Memory, encoding, order, terminator, charset));
        ASSERT_TRUE(stream->setSize(0));
        std::vector<std::u16string> texts(terminator == StringTerminator::None ? 1 : 4);
        for (std::u16string& text : texts)
            stream->writeText(text = randomText(random, encoding, charset));
        ASSERT_TRUE(stream->seek(0, SeekOrigin::Start));
        std::u16string back;
        for (const std::u16string& text : texts) {
            stream->readText(back);
            EXPECT_EQ(back, text);
        }
        EXPECT_TRUE(stream->atEnd());
        ASSERT_TRUE(stream->setSize(0));
        stream->writeText("narrow text"sv);
        ASSERT_TRUE(stream->seek(0, SeekOrigin::Start));
        std::string narrow;
        stream->readText(narrow);
        EXPECT_EQ(narrow, "narrow text");
    }
}

// Lines that end at, before and behind the places where blocks meet; positions are right in between.
TEST_P(ArchiveTest, LongLines) {
    for (const TextEncoding encoding : {TextEncoding::Utf8, TextEncoding::Utf16, TextEncoding::Utf32}) {
        TestStream stream(GetParam(), encoding, ByteOrder::Native, StringTerminator::CrLf, kCharsetSystem);
        const std::size_t sizes[] = {1, 16381, 16382, 16383, 0, 8190, 8191, 1 << 20, 5};
        char16_t letter = u'a';
        for (const std::size_t size : sizes)
            stream->writeText(std::u16string(size, letter++));
        ASSERT_TRUE(stream->seek(0, SeekOrigin::Start));
        const std::int64_t width = encoding == TextEncoding::Utf32   ? 4
                                   : encoding == TextEncoding::Utf16 ? 2
                                                                     : 1;
        std::int64_t position = 0;
        letter = u'a';
        for (const std::size_t size : sizes) {
            std::u16string line;
            EXPECT_EQ(stream->readText(line), static_cast<std::int64_t>(size) + 2);
            EXPECT_EQ(line, std::u16string(size, letter++));
            position += (static_cast<std::int64_t>(size) + 2) * width;
            EXPECT_EQ(stream->position(), position);
        }
        EXPECT_TRUE(stream->atEnd());
    }
}

TEST(Archive, SettingsAreCopiedAndCompared) {
    const struct Case {
        std::uint32_t a[4], b[4];  // byte order, terminator, encoding, charset
        bool compatible;
    } cases[] = {{{0, 3, 1, 1}, {2, 5, 1, 9}, true},  {{0, 3, 1, 0}, {1, 3, 1, 0}, false},
                 {{0, 3, 1, 0}, {0, 2, 1, 0}, false}, {{0, 3, 1, 0}, {0, 3, 2, 0}, false},
                 {{1, 0, 4, 3}, {1, 0, 4, 3}, true},  {{1, 0, 4, 3}, {1, 0, 4, 4}, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        const auto stream = [](const std::uint32_t(&settings)[4]) {
            return TestStream(StreamKind::Memory, TextEncoding{settings[2]}, ByteOrder{settings[0]},
                              StringTerminator{settings[1]}, settings[3]);
        };
        TestStream a = stream(c.a);
        TestStream b = stream(c.b);
        EXPECT_EQ(a->settingsCompatible(*b), c.compatible);
        EXPECT_EQ(b->settingsCompatible(*a), c.compatible);
        a->copySettings(*b);
        EXPECT_TRUE(a->settingsCompatible(*b));
        EXPECT_EQ(a->charset(), c.b[3]);
    }
}

}  // namespace
}  // namespace owlkit
