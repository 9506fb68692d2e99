#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "foundation/stream/file_stream.h"
#include "platform/host/fault.h"
#include "platform/host/file_record.h"
#include "testing/streams.h"

namespace owlkit {
namespace {

using namespace test;

namespace fault = platform::fault;

TEST(FileStreamHost, AsksThePlatformForWhatTheFlagsSay) {
    const struct Case {
        std::uint32_t flags;
        const char* asked;  // access, sharing, creation, attributes
    } cases[] = {{0, "80000000 1 3 80"},
                 {1, "c0000000 0 3 80"},
                 {2, "40000000 0 2 80"},
                 {3, "c0000000 0 2 80"},
                 {4, "40000000 0 4 80"},
                 {5, "c0000000 0 4 80"},
                 {0x10, "80000000 3 3 80"},
                 {0x21, "c0000000 1 3 80"},
                 {0x30, "80000000 0 3 80"},
                 {0x40, "80000000 1 3 80"},
                 {0x100, "80000000 1 3 80000080"},
                 {0x7FF00300, "80000000 1 3 0"},
                 {0x100000, "80000000 1 3 20"},
                 {0x300000, "80000000 1 3 4020"},
                 {0x1C00000, "80000000 1 3 103"},
                 {0x2000000, "80000000 1 3 80"},
                 {0x4000000, "80000000 1 3 20000080"},
                 {0x8000000, "80000000 1 3 40000080"},
                 {0x10000000, "80000000 1 3 10000080"},
                 {0x20000000, "80000000 1 3 8000080"},
                 {0x41200000, "80000000 1 3 80004100"}};
    const TemporaryFile file("12345");
    for (const Case& c : cases) {
        FileStream stream;
        fault::resetCounts();
        EXPECT_TRUE(stream.open(file.name(), c.flags));
        const platform::CreateFileArguments& given = platform::lastCreateFile();
        std::ostringstream asked;
        asked << std::hex << given.access << ' ' << given.share << ' ' << given.creation << ' '
              << given.attributes;
        EXPECT_EQ(asked.str(), c.asked) << std::hex << c.flags;
        EXPECT_EQ(fault::calls("DeviceIoControl"), c.flags == 0x7FF00300 ? 1u : 0u);
    }
    EXPECT_EQ(platform::openFileCount(), 0);
}

// A text of ordinary size, line by line, costs a handful of calls; position and size are right after every
// line.
TEST(FileStreamHost, ReadsLinesWithFewPlatformCalls) {
    std::string content;
    while (content.size() < 10240)
        content += "TEXT: line " + std::to_string(content.size()) + "\r\n";
    const TemporaryFile file(content);
    const auto bytes = static_cast<std::uint32_t>(content.size());
    const struct Case {
        std::uint32_t flags, least, most;  // calls
    } cases[] = {{0, 1, 4},
                 {kRawDevice, bytes, 2 * bytes},
                 {kShareReadWrite, bytes, 2 * bytes},
                 {kFlagNoBuffering, bytes, 2 * bytes},
                 {kFlagOverlapped, bytes, 2 * bytes}};
    for (const auto& [flags, least, most] : cases) {
        SCOPED_TRACE(flags);
        FileStream stream;
        ASSERT_TRUE(stream.open(file.name(), flags));
        fault::resetCounts();
        ASSERT_TRUE(stream.detectTextEncoding(2048));
        stream.setStringTerminator(kLf);
        std::u16string line, all;
        std::int64_t position = 0;
        while (!stream.atEnd()) {
            position += stream.readText(line);
            ASSERT_EQ(stream.position(), position);
            ASSERT_EQ(stream.size(), static_cast<std::int64_t>(content.size()));
            all += line + u"\r\n";
        }
        EXPECT_TRUE(std::equal(all.begin(), all.end(), content.begin(), content.end()));
        EXPECT_GE(fault::calls("ReadFile"), least);
        EXPECT_LE(fault::calls("ReadFile"), most);
    }
}

TEST(FileStreamHost, TransfersHaveALimit) {
    const TemporaryFile file;
    FileStream stream;
    ASSERT_TRUE(stream.open(file.name(), kCreateReadWrite));
    ASSERT_TRUE(stream.setSize(0x100000010));  // a hole, no disk space
    char byte = 0;
    expectError<std::length_error>("invalid size", [&] { stream.read(&byte, 0xFFFFFFFF); });
    ASSERT_TRUE(stream.seek(-1, kFromEnd));
    EXPECT_EQ(stream.read(&byte, 0xFFFFFFFF), 1u);
}

// One run of everything against a model of the file. Whatever fails, nothing is thrown, size and position
// stay true, no byte goes to a wrong place and no handle is left.
void runWithFault() {
    const TemporaryFile file("0123456789");
    std::string model = "0123456789";
    FileStream stream;
    stream.open(file.name(), kAppendReadWrite);
    for (const std::int64_t start : {2, 8, 0}) {
        if (!stream.isOpen())
            break;
        stream.seek(start, kFromStart);
        std::size_t at = static_cast<std::size_t>(stream.position());
        std::string bytes(3, '\0');
        const std::size_t got = stream.read(bytes.data(), 3);
        EXPECT_EQ(bytes.substr(0, got), model.substr(at, got));
        const std::size_t written = stream.write("XY", 2);
        model.replace(at += got, written, std::string("XY", written));
        EXPECT_EQ(stream.position(), static_cast<std::int64_t>(at + written));
        const std::int64_t size = stream.size() + (start == 8 ? -7 : 4);
        // A failure leaves the size, or the new size when only the way back to the position failed.
        if (stream.setSize(size) || stream.size() == size)
            model.resize(static_cast<std::size_t>(size), '\0');
        EXPECT_EQ(stream.size(), stream.isOpen() ? static_cast<std::int64_t>(model.size()) : 0);
        EXPECT_LE(stream.position(), stream.size());
        EXPECT_EQ(file.content(), model);
        if (stream.isOpen())
            stream.flush();
    }
    EXPECT_EQ(platform::openFileCount(), stream.isOpen() ? 1 : 0);
    EXPECT_EQ(file.content(), model);
}

TEST(FileStreamHost, SurvivesAFailureOfEveryCall) {
    std::uint32_t nth = 0;
    do {
        SCOPED_TRACE(++nth);
        fault::arm("*", nth, platform::kErrorDiskFull);
        runWithFault();
        EXPECT_EQ(platform::openFileCount(), 0);
    } while (fault::fired());
    EXPECT_GT(nth, 1u);
    fault::disarm();
}

TEST(FileStreamHost, TellsDiskFullApart) {
    const TemporaryFile file("0123456789");
    FileStream stream;
    char byte = 0;
    ASSERT_TRUE(stream.open(file.name(), kOpenReadWrite));
    const auto fail = [&](const char* operation, std::uint32_t error, auto call) {
        fault::arm(operation, 1, error, true);
        EXPECT_FALSE(call()) << operation;
        fault::disarm();
        return stream.isDiskFull();
    };
    EXPECT_TRUE(fail("WriteFile", 112, [&] { return stream.write("x", 1) != 0; }));
    EXPECT_EQ(stream.position(), 0);
    EXPECT_FALSE(fail("WriteFile", 5, [&] { return stream.write("x", 1) != 0; }));
    EXPECT_TRUE(fail("SetFilePointerEx", 112, [&] { return stream.seek(1, kFromStart); }));
    EXPECT_TRUE(stream.seek(1, kFromStart));
    EXPECT_TRUE(stream.isDiskFull());  // a seek clears nothing
    EXPECT_TRUE(fail("ReadFile", 5, [&] { return stream.read(&byte, 1) != 0; }));
    EXPECT_EQ(stream.read(&byte, 1), 1u);
    EXPECT_EQ(byte, '1');
    EXPECT_FALSE(stream.isDiskFull());
    EXPECT_TRUE(fail("SetFilePointerEx", 112, [&] { return stream.setSize(5); }));
    EXPECT_TRUE(stream.isOpen());
    EXPECT_TRUE(fail("FlushFileBuffers", 5, [&] { return stream.flush(); }));
    EXPECT_TRUE(stream.flush());
    EXPECT_FALSE(stream.isDiskFull());
    EXPECT_TRUE(fail("SetEndOfFile", 112, [&] { return stream.setSize(5); }));
    EXPECT_FALSE(stream.isOpen());
    EXPECT_EQ(stream.size(), 0);
}

// A failed read gives nothing at all, even where its first bytes were read ahead already.
TEST(FileStreamHost, AFailedReadMovesNothing) {
    std::string content(50000, 'a');
    content[16383] = 'b';
    const TemporaryFile file(content);
    for (const std::size_t count : {5u, 40000u}) {
        FileStream stream;
        ASSERT_TRUE(stream.open(file.name(), kOpenRead));
        std::string bytes(count, '\0');
        EXPECT_EQ(stream.read(bytes.data(), 1), 1u);
        std::string first(16382, '\0');
        EXPECT_EQ(stream.read(first.data(), first.size()), first.size());
        fault::arm("ReadFile", 1, 5, true);
        EXPECT_EQ(stream.read(bytes.data(), count), 0u);
        EXPECT_TRUE(fault::fired());
        fault::disarm();
        EXPECT_EQ(stream.position(), 16383);
        EXPECT_FALSE(stream.atEnd());
        EXPECT_EQ(stream.read(bytes.data(), count), std::min<std::size_t>(count, 50000 - 16383));
        EXPECT_EQ(bytes.substr(0, 2), "ba");
    }
    // A block that fails behind the bytes that are wanted does not keep them away.
    FileStream stream;
    ASSERT_TRUE(stream.open(file.name(), kOpenRead));
    fault::arm("ReadFile", 1, 5);
    char byte = 0;
    EXPECT_EQ(stream.read(&byte, 1), 1u);
    EXPECT_TRUE(fault::fired());
    fault::disarm();
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(stream.position(), 1);
    // Where it does not get back to, a text begins somewhere else.
    ASSERT_TRUE(stream.seek(0, kFromStart));
    fault::arm("SetFilePointerEx", 1, 5);
    EXPECT_FALSE(stream.detectTextEncoding(99));
    EXPECT_TRUE(fault::fired());
    fault::disarm();
}

}  // namespace
}  // namespace owlkit
