// For tests of the streams: the two kinds of stream over given bytes.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "foundation/stream/byte_stream.h"
#include "testing/errors.h"
#include "testing/temporary.h"

namespace test {

enum class StreamKind { Memory, File };

// A stream for reading and writing that holds `content`, positioned at its start.
class TestStream {
  public:
    explicit TestStream(StreamKind kind, const std::string& content = {});
    TestStream(StreamKind kind, const owlkit::StreamSettings& settings, const std::string& content = {});
    owlkit::ByteStream& operator*() { return *stream_; }
    owlkit::ByteStream* operator->() { return stream_.get(); }

    // All bytes; the position stays.
    std::string content();

  private:
    TemporaryFile file_;
    std::unique_ptr<owlkit::ByteStream> stream_;
};

class StreamTest : public testing::TestWithParam<StreamKind> {};

std::string kindName(const testing::TestParamInfo<StreamKind>& info);

// Bytes as hexadecimal digits.
std::string hex(std::string_view bytes);

}  // namespace test
