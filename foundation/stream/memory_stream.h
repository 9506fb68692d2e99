// A byte stream over a buffer in memory that grows as it is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/stream/byte_stream.h"

namespace owlkit {

class MemoryStream final : public ByteStream {
  public:
    // Empty, for reading and writing.
    MemoryStream();
    // A copy of `size` bytes, positioned at their start. "invalid pointer" for a null `data` with a size,
    // "invalid size" beyond maximumSize().
    MemoryStream(const void* data, std::size_t size, bool writable = true);
    // The bytes themselves, likewise.
    explicit MemoryStream(std::vector<std::uint8_t> bytes);

    bool isReadable() const override { return true; }
    bool isWritable() const override { return writable_; }
    // Reads at most what remains; errors as a file's read.
    std::size_t read(void* buffer, std::size_t count) override;
    // Grows the buffer, in steps that double it. "stream is not open for writing", "invalid pointer";
    // "invalid size" when it would grow beyond maximumSize(). `buffer` must not lie inside this stream.
    std::size_t write(const void* buffer, std::size_t count) override;
    std::int64_t size() const override { return static_cast<std::int64_t>(bytes_.size()); }
    std::int64_t maximumSize() const override { return kMaximumSize; }
    std::int64_t position() const override { return size() - static_cast<std::int64_t>(aheadCount()); }
    [[nodiscard]] bool seek(std::int64_t offset, SeekOrigin origin) override;
    // New bytes are 0. "stream is not open for writing"; "invalid size" for a negative size or one beyond
    // maximumSize().
    [[nodiscard]] bool setSize(std::int64_t newSize) override;

    // The buffer; valid until the next write or setSize.
    const std::uint8_t* data() const { return bytes_.data(); }
    // The byte at `index`. "invalid index" outside 0..size()-1.
    std::uint8_t at(std::int64_t index) const;

    static constexpr std::int64_t kMaximumSize = 0x7FFFFFFF;

  private:
    void setPosition(std::size_t position);

    std::vector<std::uint8_t> bytes_;
    bool writable_ = true;
};

}  // namespace owlkit
