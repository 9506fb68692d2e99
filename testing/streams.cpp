#include "testing/streams.h"

#include "foundation/stream/file_stream.h"
#include "foundation/stream/memory_stream.h"

namespace test {

using namespace owlkit;

TestStream::TestStream(StreamKind kind, const std::string& content) {
    if (kind == StreamKind::Memory) {
        stream_ = std::make_unique<MemoryStream>(content.data(), content.size());
        return;
    }
    auto file = std::make_unique<FileStream>();
    EXPECT_TRUE(file->open(file_.name(), OpenMode::CreateReadWrite));
    EXPECT_EQ(file->write(content.data(), content.size()), content.size());
    EXPECT_TRUE(file->seek(0, SeekOrigin::Start));
    stream_ = std::move(file);
}

TestStream::TestStream(StreamKind kind, const StreamSettings& settings, const std::string& content)
    : TestStream(kind, content) {
    stream_->setSettings(settings);
}

std::string TestStream::content() {
    const std::int64_t position = stream_->position();
    std::string bytes(static_cast<std::size_t>(stream_->size()), '\0');
    EXPECT_TRUE(stream_->seek(0, SeekOrigin::Start));
    EXPECT_EQ(stream_->read(bytes.data(), bytes.size()), bytes.size());
    EXPECT_TRUE(stream_->seek(position, SeekOrigin::Start));
    return bytes;
}

std::string kindName(const testing::TestParamInfo<StreamKind>& info) {
    return info.param == StreamKind::Memory ? "Memory" : "File";
}

std::string hex(std::string_view bytes) {
    std::string out;
    for (const char byte : bytes) {
        out += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        out += "0123456789ABCDEF"[byte & 15];
    }
    return out;
}

}  // namespace test
