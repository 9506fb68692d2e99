#include "foundation/stream/file_stream.h"

#include <stdexcept>
#include <utility>

#include "testing/streams.h"

namespace owlkit {
namespace {

using namespace test;

TEST(FileStream, OpensByMode) {
    const struct Case {
        OpenMode mode;
        bool readable, writable, opensMissing;
        const char* after;  // what "old" becomes when "XY" is written
    } cases[] = {{OpenMode::Read, true, false, false, "old"},
                 {OpenMode::ReadWrite, true, true, false, "XYd"},
                 {OpenMode::CreateWrite, false, true, true, "XY"},
                 {OpenMode::CreateReadWrite, true, true, true, "XY"},
                 {OpenMode::AppendWrite, false, true, true, "oldXY"},
                 {OpenMode::AppendReadWrite, true, true, true, "oldXY"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(static_cast<std::uint32_t>(c.mode));
        const TemporaryFile missing;
        const TemporaryFile file("old");
        FileStream stream;
        EXPECT_EQ(stream.open(missing.name(), c.mode), c.opensMissing);
        EXPECT_EQ(stream.isOpen(), c.opensMissing);
        ASSERT_TRUE(stream.open(file.name(), c.mode, TextEncoding::Utf8));
        EXPECT_EQ(stream.isReadable(), c.readable);
        EXPECT_EQ(stream.isWritable(), c.writable);
        EXPECT_EQ(stream.textEncoding(), TextEncoding::Utf8);
        EXPECT_EQ(stream.path(), file.name());
        char byte = 0;
        if (c.writable) {
            EXPECT_EQ(stream.write("XY", 2), 2u);
            EXPECT_TRUE(stream.flush());
        } else {
            expectError<std::logic_error>("stream is not open for writing", [&] { stream.write("XY", 2); });
            expectError<std::logic_error>("file is not open for writing", [&] { return stream.flush(); });
            expectError<std::logic_error>("file is not open for writing", [&] { return stream.setSize(0); });
        }
        if (!c.readable)
            expectError<std::logic_error>("stream is not open for reading", [&] { stream.read(&byte, 1); });
        stream.close();
        EXPECT_EQ(file.content(), c.after);
        expectError<std::logic_error>("stream is closed", [&] { return stream.seek(0, SeekOrigin::Start); });
        EXPECT_FALSE(stream.atEnd());
        EXPECT_FALSE(stream.detectTextEncoding(10));
    }
}

TEST(FileStream, RefusesWithoutAndWithClosing) {
    const TemporaryFile file("old");
    FileStream stream;
    ASSERT_TRUE(stream.open(file.name(), OpenMode::Read));
    EXPECT_FALSE(stream.open(std::u16string(), OpenMode::Read));
    EXPECT_FALSE(stream.open(std::string(), OpenMode::Read));
    EXPECT_TRUE(stream.isOpen());
    for (std::uint32_t mode = 6; mode < 16; ++mode)
        expectError<std::invalid_argument>("invalid argument",
                                           [&] { return stream.open(file.name(), OpenMode{mode}); });
    EXPECT_FALSE(stream.isOpen());
}

TEST(FileStream, NarrowPathsAndWriteThrough) {
    const TemporaryFile file;
    const std::u16string wide = file.path().parent_path().u16string() + platform::kPathSeparator +
                                u"nmshell_narrow" + std::filesystem::path(uniqueDigits()).u16string();
    FileStream stream;
    ASSERT_TRUE(
        stream.open(std::string(wide.begin(), wide.end()), OpenMode::CreateWrite | OpenMode::WriteThrough));
    EXPECT_EQ(stream.path(), wide);
    EXPECT_EQ(stream.narrowPath(), std::string(wide.begin(), wide.end()));
    EXPECT_EQ(stream.openFlags(), OpenMode{0x40000102});
    EXPECT_EQ(stream.write("a", 1), 1u);
    EXPECT_FALSE(stream.flush());
    stream.close();
    EXPECT_EQ(platform::deleteFile(wide), platform::kSuccess);
}

TEST(FileStream, MovesAndSwaps) {
    const TemporaryFile first("first"), second("second");
    FileStream a, b;
    ASSERT_TRUE(a.open(first.name(), OpenMode::ReadWrite, TextEncoding::Utf8));
    ASSERT_TRUE(b.open(second.name(), OpenMode::Read));
    char byte = 0;
    EXPECT_EQ(b.read(&byte, 1), 1u);
    swap(a, b);
    EXPECT_EQ(a.position(), 1);
    EXPECT_EQ(a.read(&byte, 1), 1u);
    EXPECT_EQ(byte, 'e');
    a = std::move(b);
    EXPECT_FALSE(b.isOpen());
    EXPECT_EQ(b.size(), 0);
    EXPECT_EQ(a.path(), first.name());
    EXPECT_EQ(a.textEncoding(), TextEncoding::Utf8);
    FileStream& self = a;
    a = std::move(self);
    FileStream c(std::move(a));
    EXPECT_EQ(c.read(&byte, 1), 1u);
    EXPECT_EQ(byte, 'f');
    FileStream again;
    EXPECT_TRUE(again.open(second.name(), OpenMode::CreateWrite));  // nothing holds the other file any more
}

}  // namespace
}  // namespace owlkit
