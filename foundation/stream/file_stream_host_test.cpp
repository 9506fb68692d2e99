#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "foundation/stream/file_stream.h"
#include "platform/host/file_host.h"
#include "testing/faults.h"
#include "testing/streams.h"

namespace owlkit {
namespace {

using namespace test;
namespace host = platform::host;

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
        EXPECT_TRUE(stream.open(file.name(), OpenMode{c.flags}));
        const host::CreateFileArguments& given = host::lastCreateFile();
        std::ostringstream asked;
        asked << std::hex << given.access << ' ' << given.share << ' ' << given.creation << ' '
              << given.attributes;
        EXPECT_EQ(asked.str(), c.asked) << std::hex << c.flags;
        EXPECT_EQ(fault::calls("DeviceIoControl"), c.flags == 0x7FF00300 ? 1u : 0u);
    }
    EXPECT_EQ(host::openFileCount(), 0);
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
        OpenMode mode;
        std::uint32_t least, most;  // calls
    } cases[] = {{OpenMode::Read, 1, 4},
                 {OpenMode::RawDevice, bytes, 2 * bytes},
                 {OpenMode::ShareReadWrite, bytes, 2 * bytes},
                 {OpenMode::FlagNoBuffering, bytes, 2 * bytes},
                 {OpenMode::FlagOverlapped, bytes, 2 * bytes}};
    for (const auto& [mode, least, most] : cases) {
        SCOPED_TRACE(static_cast<std::uint32_t>(mode));
        FileStream stream;
        ASSERT_TRUE(stream.open(file.name(), mode));
        fault::resetCounts();
        ASSERT_TRUE(stream.detectTextEncoding(2048));
        stream.setStringTerminator(StringTerminator::Lf);
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
    ASSERT_TRUE(stream.open(file.name(), OpenMode::CreateReadWrite));
    ASSERT_TRUE(stream.setSize(0x100000010));  // a hole, no disk space
    char byte = 0;
    expectError<std::length_error>("invalid size", [&] { stream.read(&byte, 0xFFFFFFFF); });
    ASSERT_TRUE(stream.seek(-1, SeekOrigin::End));
    EXPECT_EQ(stream.read(&byte, 0xFFFFFFFF), 1u);
}

// One run of everything against a model of the file. Whatever fails, nothing is thrown, size and position
// stay true, no byte goes to a wrong place and no handle is left.
void runWithFault() {
    const TemporaryFile file("0123456789");
    std::string model = "0123456789";
    FileStream stream;
    static_cast<void>(stream.open(file.name(), OpenMode::AppendReadWrite));
    for (const std::int64_t start : {2, 8, 0}) {
        if (!stream.isOpen())
            break;
        static_cast<void>(stream.seek(start, SeekOrigin::Start));
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
            static_cast<void>(stream.flush());
    }
    EXPECT_EQ(host::openFileCount(), stream.isOpen() ? 1 : 0);
    EXPECT_EQ(file.content(), model);
}

TEST(FileStreamHost, SurvivesAFailureOfEveryCall) {
    walkFaults("*", platform::kErrorDiskFull, [] {
        runWithFault();
        EXPECT_EQ(host::openFileCount(), 0);
    });
}

TEST(FileStreamHost, TellsDiskFullApart) {
    const TemporaryFile file("0123456789");
    FileStream stream;
    char byte = 0;
    ASSERT_TRUE(stream.open(file.name(), OpenMode::ReadWrite));
    const auto fail = [&](const char* operation, platform::Status error, auto call) {
        fault::arm(operation, 1, error, true);
        EXPECT_FALSE(call()) << operation;
        fault::disarm();
        return stream.isDiskFull();
    };
    EXPECT_TRUE(fail("WriteFile", platform::kErrorDiskFull, [&] { return stream.write("x", 1) != 0; }));
    EXPECT_EQ(stream.position(), 0);
    EXPECT_FALSE(fail("WriteFile", platform::kErrorAccessDenied, [&] { return stream.write("x", 1) != 0; }));
    EXPECT_TRUE(fail("SetFilePointerEx", platform::kErrorDiskFull,
                     [&] { return stream.seek(1, SeekOrigin::Start); }));
    EXPECT_TRUE(stream.seek(1, SeekOrigin::Start));
    EXPECT_TRUE(stream.isDiskFull());  // a seek clears nothing
    EXPECT_TRUE(fail("ReadFile", platform::kErrorAccessDenied, [&] { return stream.read(&byte, 1) != 0; }));
    EXPECT_EQ(stream.read(&byte, 1), 1u);
    EXPECT_EQ(byte, '1');
    EXPECT_FALSE(stream.isDiskFull());
    EXPECT_TRUE(fail("SetFilePointerEx", platform::kErrorDiskFull, [&] { return stream.setSize(5); }));
    EXPECT_TRUE(stream.isOpen());
    EXPECT_TRUE(fail("FlushFileBuffers", platform::kErrorAccessDenied, [&] { return stream.flush(); }));
    EXPECT_TRUE(stream.flush());
    EXPECT_FALSE(stream.isDiskFull());
    EXPECT_TRUE(fail("SetEndOfFile", platform::kErrorDiskFull, [&] { return stream.setSize(5); }));
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
        ASSERT_TRUE(stream.open(file.name(), OpenMode::Read));
        std::string bytes(count, '\0'), first(16382, '\0');
        EXPECT_EQ(stream.read(bytes.data(), 1), 1u);
        EXPECT_EQ(stream.read(first.data(), first.size()), first.size());
        failEach(
            {"ReadFile"}, platform::kErrorAccessDenied,
            [&] { EXPECT_EQ(stream.read(bytes.data(), count), 0u); }, true);
        EXPECT_EQ(stream.position(), 16383);
        EXPECT_FALSE(stream.atEnd());
        EXPECT_EQ(stream.read(bytes.data(), count), std::min<std::size_t>(count, 50000 - 16383));
        EXPECT_EQ(bytes.substr(0, 2), "ba");
    }
    FileStream stream;
    ASSERT_TRUE(stream.open(file.name(), OpenMode::Read));
    char byte = 0;
    // A block that fails behind the bytes that are wanted does not keep them away.
    failEach({"ReadFile"}, platform::kErrorAccessDenied, [&] { EXPECT_EQ(stream.read(&byte, 1), 1u); });
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(stream.position(), 1);
    // Where it does not get back to, a text begins somewhere else.
    ASSERT_TRUE(stream.seek(0, SeekOrigin::Start));
    failEach({"SetFilePointerEx"}, platform::kErrorAccessDenied,
             [&] { EXPECT_FALSE(stream.detectTextEncoding(99)); });
}

}  // namespace
}  // namespace owlkit
