// What the tests of the streams share: the two kinds of stream over given bytes, files that go away by
// themselves.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <typeinfo>

#include "foundation/stream/file_stream.h"
#include "foundation/stream/memory_stream.h"

namespace owlkit {

// A file name with characters outside every single-byte charset, not used before; the file is deleted at the
// end.
class TempFile {
  public:
    TempFile() : path_(std::filesystem::temp_directory_path() / (u"owlkit \u00E9\u4E2D " + number())) {}
    explicit TempFile(const std::string& content) : TempFile() {
        std::ofstream(path_, std::ios::binary) << content;
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    std::u16string name() const { return path_.u16string(); }
    const std::filesystem::path& path() const { return path_; }
    std::string content() const {
        std::ifstream in(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    // Digits that make a name of its own.
    static std::u16string number() {
        const std::string digits = std::to_string(std::random_device{}());
        return {digits.begin(), digits.end()};
    }

  private:
    std::filesystem::path path_;
};

enum class StreamKind { Memory, File };

// A stream for reading and writing that holds `content`, positioned at its start.
class TestStream {
  public:
    explicit TestStream(StreamKind kind, const std::string& content = {}) {
        if (kind == StreamKind::Memory) {
            stream_ = std::make_unique<MemoryStream>(content.data(), content.size());
            return;
        }
        auto file = std::make_unique<FileStream>();
        EXPECT_TRUE(file->open(file_.name(), kCreateReadWrite));
        EXPECT_EQ(file->write(content.data(), content.size()), content.size());
        EXPECT_TRUE(file->seek(0, kFromStart));
        stream_ = std::move(file);
    }
    TestStream(StreamKind kind, std::uint32_t encoding, std::uint32_t order, std::uint32_t terminator,
               CharsetCode charset, const std::string& content = {})
        : TestStream(kind, content) {
        stream_->setTextEncoding(encoding);
        stream_->setByteOrder(order);
        stream_->setStringTerminator(terminator);
        stream_->setCharset(charset);
    }
    ByteStream& operator*() { return *stream_; }
    ByteStream* operator->() { return stream_.get(); }

    // All bytes; the position stays.
    std::string content() {
        const std::int64_t position = stream_->position();
        std::string bytes(static_cast<std::size_t>(stream_->size()), '\0');
        EXPECT_TRUE(stream_->seek(0, kFromStart));
        EXPECT_EQ(stream_->read(bytes.data(), bytes.size()), bytes.size());
        EXPECT_TRUE(stream_->seek(position, kFromStart));
        return bytes;
    }

  private:
    TempFile file_;
    std::unique_ptr<ByteStream> stream_;
};

class StreamTest : public testing::TestWithParam<StreamKind> {};

inline std::string kindName(const testing::TestParamInfo<StreamKind>& info) {
    return info.param == StreamKind::Memory ? "Memory" : "File";
}

inline std::string hex(std::string_view bytes) {
    std::string out;
    for (const char byte : bytes) {
        out += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        out += "0123456789ABCDEF"[byte & 15];
    }
    return out;
}

// That `call` throws exactly an `Error` with `text`.
template <class Error, class Call>
void expectError(const char* text, Call call) {
    SCOPED_TRACE(text);
    try {
        call();
        ADD_FAILURE() << "nothing thrown";
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), text);
        EXPECT_TRUE(typeid(error) == typeid(Error)) << typeid(error).name();
    }
}

}  // namespace owlkit
