#include "foundation/stream/byte_stream.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include "foundation/stream/memory_stream.h"
#include "testing/streams.h"

namespace owlkit {
namespace {

using namespace test;

using namespace std::string_literals;

class ByteStreamTest : public StreamTest {};

INSTANTIATE_TEST_SUITE_P(Kinds, ByteStreamTest, testing::Values(StreamKind::Memory, StreamKind::File),
                         kindName);

// Both streams against a string with a position, in steps that cross the blocks read ahead.
TEST_P(ByteStreamTest, BehavesLikeAStringWithAPosition) {
    std::mt19937 random(7);
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % (limit + 1); };
    TestStream stream(GetParam());
    std::string model;
    std::size_t at = 0;
    for (int step = 0; step < 3000; ++step) {
        SCOPED_TRACE(step);
        const std::size_t count = below(below(1) != 0 ? 40000 : 50);
        std::string bytes(count, static_cast<char>('a' + below(25)));
        const std::size_t operation = below(60);
        if (operation < 9) {
            ASSERT_EQ(stream->write(bytes.data(), count), count);
            model.replace(at, count, bytes);
            at += count;
        } else if (operation < 18) {
            const auto target = static_cast<std::int64_t>(below(model.size() + 2)) - 1;
            const auto origin = static_cast<std::uint32_t>(below(2));
            const std::size_t base[] = {0, at, model.size()};
            const bool inside = target >= 0 && target <= static_cast<std::int64_t>(model.size());
            ASSERT_EQ(stream->seek(target - static_cast<std::int64_t>(base[origin]), SeekOrigin{origin}),
                      inside);
            at = inside ? static_cast<std::size_t>(target) : at;
        } else if (operation < 20) {
            ASSERT_TRUE(stream->setSize(static_cast<std::int64_t>(count)));
            model.resize(count, '\0');
            at = std::min(at, count);
        } else {
            bytes.resize(stream->read(bytes.data(), count));
            ASSERT_EQ(bytes, model.substr(at, count));
            at += bytes.size();
        }
        ASSERT_EQ(stream->position(), static_cast<std::int64_t>(at));
        ASSERT_EQ(stream->size(), static_cast<std::int64_t>(model.size()));
        ASSERT_EQ(stream->remaining(), static_cast<std::int64_t>(model.size() - at));
        ASSERT_EQ(stream->atEnd(), at == model.size());
    }
    EXPECT_EQ(stream.content(), model);
}

TEST_P(ByteStreamTest, RefusesBadArguments) {
    TestStream stream(GetParam(), "abc");
    expectError<std::invalid_argument>("invalid pointer", [&] { stream->read(nullptr, 1); });
    expectError<std::invalid_argument>("invalid pointer", [&] { stream->write(nullptr, 1); });
    expectError<std::length_error>("invalid size", [&] { stream->write("", 0xFFFFFFFF); });
    expectError<std::length_error>("invalid size", [&] { return stream->setSize(-1); });
    EXPECT_EQ(stream->write(nullptr, 0), 0u);
    EXPECT_EQ(stream->read(nullptr, 0), 0u);
    EXPECT_FALSE(stream->seek(0, SeekOrigin{3}));
    EXPECT_FALSE(stream->seek(INT64_MAX, SeekOrigin::End));
    EXPECT_FALSE(stream->seek(INT64_MIN, SeekOrigin::Position));
    EXPECT_TRUE(stream->seek(0, SeekOrigin::End));
    EXPECT_EQ(stream->read(nullptr, 100), 0u);  // cut to nothing before the pointer matters
    EXPECT_EQ(stream.content(), "abc");
}

TEST_P(ByteStreamTest, CopiesInBlocks) {
    for (const std::size_t size : {0u, 1u, 65535u, 65536u, 65537u, 200000u}) {
        std::string bytes(size + 3, '\0');
        std::generate(bytes.begin(), bytes.end(), [n = 0]() mutable { return static_cast<char>(n++ * 7); });
        TestStream source(GetParam(), bytes);
        TestStream target(GetParam());
        EXPECT_EQ(target->copyFrom(*source, static_cast<std::int64_t>(size)),
                  static_cast<std::int64_t>(size));
        EXPECT_EQ(source->readInto(*target, -1), 3);
        EXPECT_EQ(source->readInto(*target, 10), 0);
        EXPECT_EQ(target.content(), bytes);
    }
}

TEST_P(ByteStreamTest, SkipsAndKeepsACheckValue) {
    TestStream stream(GetParam(), "123456789" + std::string(100000, 'x'));
    EXPECT_EQ(stream->skip(4) + stream->skip(5), 9);
    EXPECT_EQ(~stream->skipCheck(), 0xCBF43926u);  // the published check value of CRC-32
    EXPECT_EQ(stream->skip(70000), 70000);
    EXPECT_EQ(stream->skip(-1), 30000);
    EXPECT_EQ(stream->skip(5), 0);
}

TEST_P(ByteStreamTest, DetectsTheEncoding) {
    using enum TextEncoding;
    const struct Case {
        const char* name;
        std::string bytes;
        std::size_t sample;
        TextEncoding encoding;
        std::int64_t markSize = 0;
        ByteOrder order = ByteOrder::BigEndian;
    } cases[] = {
        {"UTF-8 mark", "\xEF\xBB\xBFx", 99, Utf8, 3, ByteOrder::Native},
        {"UTF-16 big mark", "\xFE\xFF", 99, Utf16, 2},
        {"UTF-16 little mark", "\xFF\xFEx\0"s, 99, Utf16, 2, ByteOrder::LittleEndian},
        {"UTF-32 big mark", "\0\0\xFE\xFF"s, 99, Utf32, 4},
        {"UTF-32 little mark", "\xFF\xFE\0\0"s, 99, Utf16, 2, ByteOrder::LittleEndian},
        {"no mark", "\xEF\xBBx", 99, Charset},
        {"empty", "", 99, Utf8},
        {"UTF-8", "\xC3\xA9\xF0\x9F\x98\x80", 99, Utf8},
        {"cut by the sample", "\xC3\xA9\xF0\x9F\x98\x80", 5, Utf8},
        {"cut after the lead", "ab\xE2\x82\xAC", 3, Utf8},
        {"cut by the end", "ab\xE2\x82", 4, Charset},
        {"cut, overlong", "a\xE0\x80\x80", 3, Charset},
        {"cut, above 10FFFF", "a\xF4\x90\x80\x80", 3, Charset},
        {"stray bytes at the cut", "a\x80\x80\x80\x80", 4, Charset},
        {"bad behind the sample", "abc\xFF", 3, Utf8},
        {"Latin letters", "caf\xE9 x", 99, Charset},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TestStream stream(GetParam(), {ByteOrder::BigEndian, StringTerminator::Lf, None, kCharsetDos850},
                          "@" + c.bytes);
        ASSERT_TRUE(stream->seek(1, SeekOrigin::Start));
        EXPECT_EQ(stream->detectByteOrderMark(), c.markSize != 0);
        EXPECT_EQ(stream->position(), c.markSize + 1);
        EXPECT_EQ(stream->textEncoding(), c.markSize != 0 ? c.encoding : None);
        EXPECT_EQ(stream->byteOrder(), c.order);
        ASSERT_TRUE(stream->seek(1, SeekOrigin::Start));
        EXPECT_TRUE(stream->detectTextEncoding(c.sample));
        EXPECT_EQ(stream->position(), c.markSize + 1);
        EXPECT_EQ(stream->textEncoding(), c.encoding);
        EXPECT_EQ(stream->charset(), c.encoding == Charset ? systemCharset() : kCharsetDos850);
    }
}

TEST_P(ByteStreamTest, WritesTheMark) {
    const char* const marks[][2] = {
        {"", ""}, {"EFBBBF", "EFBBBF"}, {"FFFE", "FEFF"}, {"FFFE0000", "0000FEFF"}, {"", ""}};
    for (std::uint32_t number = 0; number < 15; ++number) {
        SCOPED_TRACE(number);
        const ByteOrder order{number / 5};
        TestStream stream(GetParam(), {order, StringTerminator::Nul, TextEncoding{number % 5}});
        const char* const mark = marks[number % 5][order == ByteOrder::BigEndian];
        EXPECT_EQ(stream->writeByteOrderMark(), *mark != '\0');
        EXPECT_EQ(hex(stream.content()), mark);
    }
}

TEST(MemoryStream, HasItsOwnLimits) {
    MemoryStream stream;
    expectError<std::length_error>("invalid size", [&] { return stream.setSize(0x80000000); });
    expectError<std::length_error>("invalid size", [&] { stream.write("", 0x80000000); });
    expectError<std::length_error>("invalid size", [] { MemoryStream("", 0x80000000); });
    expectError<std::invalid_argument>("invalid pointer", [] { MemoryStream(nullptr, 1); });
    MemoryStream fixed("ab", 2, false);
    EXPECT_EQ(fixed.at(1), 'b');
    expectError<std::out_of_range>("invalid index", [&] { fixed.at(2); });
    expectError<std::logic_error>("stream is not open for writing", [&] { fixed.write("c", 1); });
    expectError<std::logic_error>("stream is not open for writing", [&] { return fixed.setSize(1); });
}

}  // namespace
}  // namespace owlkit
