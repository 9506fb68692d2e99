// A stream of bytes with a position: what an archive needs to be sought in, sized and examined for its text
// encoding.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/errors.h"
#include "foundation/stream/archive.h"

namespace owlkit {

// Where a seek's offset counts from. To any other origin there is no way.
enum class SeekOrigin : std::uint32_t { Start = 0, Position = 1, End = 2 };

// Promised surface, which the extension itself does not call: atEnd, maximumSize, setSize, skip and
// skipCheck, writeByteOrderMark.
class ByteStream : public Archive {
  public:
    bool isSeekable() const override;
    std::int64_t remaining() const override;

    // Open, and nothing remains.
    virtual bool atEnd() const;
    // In bytes.
    virtual std::int64_t size() const = 0;
    virtual std::int64_t maximumSize() const;
    virtual std::int64_t position() const = 0;
    // Moves the position within 0..size(), both included; false, and nothing moves, for any other target.
    [[nodiscard]] virtual bool seek(std::int64_t offset, SeekOrigin origin) = 0;
    // Cuts or extends the stream; a position beyond the new end moves to it.
    [[nodiscard]] virtual bool setSize(std::int64_t newSize) = 0;
    // Reads past `count` bytes (negative: all that remain) in blocks of 65536 and gives how many there were.
    // They are folded into skipCheck().
    virtual std::int64_t skip(std::int64_t count);
    // Looks for a byte-order mark at the position. A UTF-8 mark sets the encoding and native order, a UTF-16
    // or UTF-32 one the encoding and the mark's order; the position is then behind the mark. Otherwise false,
    // and the position is back. FF FE is always UTF-16, also where 00 00 follows: a NUL of it.
    virtual bool detectByteOrderMark();
    // Finds out how the text at the position is encoded: by its byte-order mark (the position is then behind
    // it), else from at most `sampleSize` bytes: UTF-8 if they are valid UTF-8, a character cut by the end of
    // the sample allowed, otherwise the system charset. False when the stream cannot be read or the position
    // cannot be put back.
    [[nodiscard]] virtual bool detectTextEncoding(std::size_t sampleSize);
    // Writes the mark of the text encoding, UTF-16 and UTF-32 in big-endian order only if that is set. False
    // for an encoding without a mark, or when it could not be written whole.
    [[nodiscard]] virtual bool writeByteOrderMark();

    // CRC-32 (reflected polynomial EDB88320) over all bytes that this object ever skipped, seeded with
    // FFFFFFFF, without the final inversion.
    std::uint32_t skipCheck() const { return skipCheck_; }

  protected:
    void swapByteStream(ByteStream& other) noexcept;

    // What a read and a write ask first of a buffer and the count that is to be moved: "invalid pointer" for
    // a null buffer, then "invalid size" for 0xFFFFFFFF bytes or more, which no platform call can move.
    static void checkTransfer(const void* buffer, std::size_t count) {
        if (buffer == nullptr && count != 0)
            throwInvalidPointer();
        if (count >= 0xFFFFFFFF)
            throwInvalidSize();
    }

    // The position that `offset` from `origin` means; -1 when it lies outside 0..size().
    std::int64_t seekTarget(std::int64_t offset, SeekOrigin origin) const;

  private:
    std::uint32_t skipCheck_ = 0xFFFFFFFF;
};

}  // namespace owlkit
