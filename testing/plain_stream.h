// A stream that is neither a file nor memory.
#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "foundation/stream/byte_stream.h"

namespace test {

// Reads without anything at hand beforehand, at most so many bytes at a time.
class PlainStream final : public owlkit::ByteStream {
  public:
    explicit PlainStream(std::string bytes, std::size_t most = std::string::npos)
        : bytes_(std::move(bytes)), most_(most) {}
    bool isReadable() const override { return true; }
    bool isWritable() const override { return false; }
    std::size_t read(void* buffer, std::size_t count) override {
        count = bytes_.copy(static_cast<char*>(buffer), std::min(count, most_), at_);
        at_ += count;
        return count;
    }
    std::size_t write(const void*, std::size_t) override { return 0; }
    std::int64_t size() const override { return static_cast<std::int64_t>(bytes_.size()); }
    std::int64_t position() const override { return static_cast<std::int64_t>(at_); }
    bool seek(std::int64_t offset, owlkit::SeekOrigin origin) override {
        const std::int64_t target = seekTarget(offset, origin);
        at_ = target < 0 ? at_ : static_cast<std::size_t>(target);
        return target >= 0;
    }
    bool setSize(std::int64_t) override { return false; }

  private:
    std::string bytes_;
    std::size_t most_;
    std::size_t at_ = 0;
};

}  // namespace test
