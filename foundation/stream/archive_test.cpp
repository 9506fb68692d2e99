#include "foundation/stream/archive.h"

#include <cstring>
#include <stdexcept>

#include "testing/streams.h"

namespace owlkit {
namespace {

using namespace test;

using namespace std::string_literals;
using namespace std::string_view_literals;

using enum TextEncoding;
using enum ByteOrder;
using Terminator = StringTerminator;

class ArchiveTest : public StreamTest {
  protected:
    // Writes and reads `value` in every byte order; `bigEndian` are its bytes in hexadecimal digits. Then
    // reads each beginning of it.
    template <class T>
    void expectScalar(T value, const std::string& bigEndian, auto write, std::size_t (Archive::*read)(T&)) {
        SCOPED_TRACE(bigEndian);
        std::string littleEndian;
        for (std::size_t i = bigEndian.size(); i > 0; i -= 2)
            littleEndian += bigEndian.substr(i - 2, 2);
        const std::size_t width = bigEndian.size() / 2;
        for (const ByteOrder order : {Native, BigEndian, LittleEndian}) {
            TestStream stream(GetParam());
            stream->setByteOrder(order);
            EXPECT_EQ(write(*stream, value), width);
            EXPECT_EQ(hex(stream.content()), order == BigEndian ? bigEndian : littleEndian);
            ASSERT_TRUE(stream->seek(0, SeekOrigin::Start));
            T back{};
            EXPECT_EQ(((*stream).*read)(back), width);
            EXPECT_EQ(back, value);
            for (std::size_t cut = 0; cut < width; ++cut) {
                TestStream part(GetParam(), stream.content().substr(0, cut));
                EXPECT_EQ(((*part).*read)(back), cut);
                EXPECT_TRUE(part->atEnd());
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, ArchiveTest, testing::Values(StreamKind::Memory, StreamKind::File), kindName);

TEST_P(ArchiveTest, ScalarsHaveTheirLayoutAndComeBack) {
    using A = Archive;
    const auto write32 = [](A& s, const auto& v) { return s.writeInt32(v); };
    const auto write16 = [](A& s, const auto& v) { return s.writeInt16(v); };
    const auto write8 = [](A& s, const auto& v) { return s.writeByte(v); };
    const auto write64 = [](A& s, const auto& v) { return s.writeInt64(v); };
    const auto writeFloating = [](A& s, const auto& v) { return s.writeFloating(v); };
    const auto writeLong = [](A& s, long double v) { return s.writeFloating(static_cast<double>(v)); };
    const auto value8 = [](A& s, auto v) { return s.writeValue8(static_cast<std::uint8_t>(v)); };
    const auto value16 = [](A& s, auto v) { return s.writeValue16(static_cast<std::uint16_t>(v)); };
    const auto value32 = [](A& s, auto v) { return s.writeValue32(static_cast<std::uint32_t>(v)); };
    const auto value64 = [](A& s, auto v) { return s.writeValue64(v); };
    expectScalar(-2, "FFFFFFFE", write32, &A::readInt32);
    expectScalar(0x01020304u, "01020304", write32, &A::readInt32);
    expectScalar(-16909060L, "FEFDFCFC", write32, &A::readInt32);
    expectScalar(0xFEDCBA98ul, "FEDCBA98", write32, &A::readInt32);
    expectScalar(std::int16_t{-3}, "FFFD", write16, &A::readInt16);
    expectScalar(std::uint16_t{0xABCD}, "ABCD", write16, &A::readInt16);
    expectScalar(true, "01", value8, &A::readByte);
    expectScalar('\xE9', "E9", value8, &A::readByte);
    expectScalar(std::uint8_t{0x7F}, "7F", write8, &A::readByte);
    expectScalar(u'\u20AC', "20AC", value16, &A::readUnit16);
    expectScalar(Code16{0x1234}, "1234", value16, &A::readUnit16);
    expectScalar(U'\U0001F600', "0001F600", value32, &A::readUnit32);
    expectScalar(Code32{0x89ABCDEF}, "89ABCDEF", value32, &A::readUnit32);
    expectScalar(-2LL, "FFFFFFFFFFFFFFFE", write64, &A::readInt64);
    expectScalar(0x0102030405060708ull, "0102030405060708", value64, &A::readInt64);
    expectScalar(-1.5, "BFF8000000000000", writeFloating, &A::readFloating);
    expectScalar(0.15625f, "3E200000", writeFloating, &A::readFloating);
    expectScalar(1.0L, "3FF0000000000000", writeLong, &A::readFloating);
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
    for (const ByteOrder order : {BigEndian, LittleEndian}) {
        TestStream stream(GetParam());
        stream->setByteOrder(order);
        stream->writeRaw("abc"sv);
        EXPECT_EQ(stream->writeRaw(""sv), 4u);
        EXPECT_EQ(stream->writeRaw(u"wide"sv), 8u);
        const char* bytes = order == BigEndian ? "00000003616263000000000000000477696465"
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
        StreamSettings settings;
        const char* bytes;
    } cases[] = {
        {{BigEndian, Terminator::CrLf, None}, "4100E900AC203DD800DE0D000A00"},
        {{BigEndian, Terminator::CrLf, Utf8}, "41C3A9E282ACF09F98800D0A"},
        {{Native, Terminator::Lf, Utf16}, "4100E900AC203DD800DE0A00"},
        {{BigEndian, Terminator::CrLfAlias, Utf16}, "004100E920ACD83DDE00000D000A"},
        {{LittleEndian, Terminator::Cr, Utf32}, "41000000E9000000AC20000000F601000D000000"},
        {{BigEndian, Terminator::Nul, Utf32}, "00000041000000E9000020AC0001F60000000000"},
        {{Native, Terminator::None, Charset, kCharsetWindows1252}, "41E9803F"},
        {{Native, Terminator::Nul, Charset, kCharsetAscii}, "413F3F3F00"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        TestStream stream(GetParam(), c.settings);
        const std::int64_t written = stream->writeText(u"A\u00E9\u20AC\U0001F600"sv);
        EXPECT_EQ(written, stream->size());
        EXPECT_EQ(hex(stream.content()), c.bytes);
    }
    TestStream stream(GetParam(), {Native, Terminator::CrLf, None});
    EXPECT_EQ(stream->writeText("\xFF\x80"sv), 4);  // narrow text, unconverted
    stream->setTextEncoding(Utf16);
    EXPECT_EQ(stream->writeText("line"sv), 12);
    EXPECT_EQ(hex(stream.content()), "FF800D0A6C0069006E0065000D000A00");
}

TEST_P(ArchiveTest, TextIsReadUpToItsTerminator) {
    const struct Case {
        const char* name;
        StreamSettings settings;
        std::string bytes;
        std::u16string text;
        std::int64_t consumed;
        std::int64_t maxCount = -1;
    } cases[] = {
        {"NUL", {Native, Terminator::Nul, Utf8}, "a\0b"s, u"a", 2},
        {"CR LF read as LF", {Native, Terminator::Lf, Utf8}, "line\r\nx", u"line", 6},
        {"one CR goes, one stays", {Native, Terminator::CrLfAlias, Utf8}, "a\r\r\n", u"a\r", 4},
        {"a CR before no LF stays", {Native, Terminator::Lf, Utf8}, "a\r", u"a\r", 2},
        {"CR", {Native, Terminator::Cr, Utf8}, "a\nb\rc", u"a\nb", 4},
        {"no terminator", {Native, Terminator::None, Utf8}, "a\0\r\n"s, u"a\0\r\n"s, 4},
        {"empty line", {Native, Terminator::Lf, Utf8}, "\nx", u"", 1},
        {"count before the end", {Native, Terminator::Lf, Utf8}, "abc\n", u"ab", 2, 2},
        {"count takes the terminator", {Native, Terminator::Lf, Utf8}, "ab\n", u"ab", 3, 3},
        {"bad UTF-8", {Native, Terminator::Lf, Utf8}, "a\xC0\n", u"a?", 3},
        {"big, LF", {BigEndian, Terminator::Lf, Utf16}, "\x0A\x0A\0\x0D\0\x0A"s, u"\u0A0A", 3},
        {"little, byte 0A inside", {Native, Terminator::Lf, Utf16}, "\0\x0A\x0A\0"s, u"\u0A00", 2},
        {"unit cut by the end", {Native, Terminator::Lf, Utf16}, "a\0b"s, u"a", 1},
        {"UTF-32", {BigEndian, Terminator::Nul, Utf32}, "\0\x01\xF6\0\0\x11\0\0\0\0\0\0"s, u"\U0001F600?", 3},
        {"none", {BigEndian, Terminator::Lf, None}, "a\0\r\0\n\0"s, u"a", 3},
        {"charset", {Native, Terminator::Lf, Charset, kCharsetWindows1252}, "\x80\xE9\n", u"\u20AC\u00E9", 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TestStream stream(GetParam(), c.settings, c.bytes);
        std::u16string text = u"old";
        EXPECT_EQ(stream->readText(text, c.maxCount), c.consumed);
        EXPECT_EQ(text, c.text);
    }
}

// Lines that end at, before and behind the places where blocks meet; positions are right in between.
TEST_P(ArchiveTest, LongLines) {
    for (const auto& [encoding, width] : {std::pair{Utf8, 1}, {Utf16, 2}, {Utf32, 4}}) {
        TestStream stream(GetParam(), {Native, Terminator::CrLf, encoding});
        const std::size_t sizes[] = {1, 16381, 16382, 16383, 0, 8190, 8191, 1 << 20, 5};
        char16_t letter = u'a';
        for (const std::size_t size : sizes)
            stream->writeText(std::u16string(size, letter++));
        ASSERT_TRUE(stream->seek(0, SeekOrigin::Start));
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
        StreamSettings a, b;
        bool compatible;
    } cases[] = {
        {{Native, Terminator::CrLf, Utf8, 1}, {LittleEndian, Terminator::CrLfAlias, Utf8, 9}, true},
        {{Native, Terminator::CrLf, Utf8}, {BigEndian, Terminator::CrLf, Utf8}, false},
        {{Native, Terminator::CrLf, Utf8}, {Native, Terminator::Lf, Utf8}, false},
        {{Native, Terminator::CrLf, Utf8}, {Native, Terminator::CrLf, Utf16}, false},
        {{BigEndian, Terminator::None, Charset, 3}, {BigEndian, Terminator::None, Charset, 3}, true},
        {{BigEndian, Terminator::None, Charset, 3}, {BigEndian, Terminator::None, Charset, 4}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        TestStream a(StreamKind::Memory, c.a);
        TestStream b(StreamKind::Memory, c.b);
        EXPECT_EQ(a->settingsCompatible(*b), c.compatible);
        EXPECT_EQ(b->settingsCompatible(*a), c.compatible);
        a->copySettings(*b);
        EXPECT_TRUE(a->settingsCompatible(*b));
        EXPECT_EQ(a->charset(), c.b.charset);
    }
}

}  // namespace
}  // namespace owlkit
