// A byte stream over a platform file or a raw disk device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/stream/byte_stream.h"
#include "platform/file.h"

namespace owlkit {

// How a file is opened: one of the first six, with any of the others.
enum class OpenMode : std::uint32_t {
    // Access and creation, in the low four bits.
    Read = 0,             // existing file
    ReadWrite = 1,        // existing file
    CreateWrite = 2,      // emptied or new
    CreateReadWrite = 3,  // emptied or new
    AppendWrite = 4,      // existing or new, positioned at the end
    AppendReadWrite = 5,  // existing or new, positioned at the end
    // Sharing, in bits 4 to 7. Any other value: reading for Read, else none.
    ShareReadWrite = 0x10,
    ShareRead = 0x20,
    ShareNone = 0x30,
    // How the platform treats the file.
    WriteThrough = 0x100,  // sets FlagWriteThrough too
    RawDevice = 0x200,     // no attributes; the size is the device's length
    AttributeArchive = 1u << 20,
    AttributeEncrypted = 1u << 21,
    AttributeHidden = 1u << 22,
    AttributeReadOnly = 1u << 23,
    AttributeTemporary = 1u << 24,
    FlagNoBuffering = 1u << 26,
    FlagOverlapped = 1u << 27,
    FlagRandomAccess = 1u << 28,
    FlagSequentialScan = 1u << 29,
    FlagWriteThrough = 1u << 30,
};
constexpr OpenMode operator|(OpenMode a, OpenMode b) {
    return static_cast<OpenMode>(static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b));
}
constexpr OpenMode operator&(OpenMode a, OpenMode b) {
    return static_cast<OpenMode>(static_cast<std::uint32_t>(a) & static_cast<std::uint32_t>(b));
}
// Whether `mode` has one of the bits of `flags`.
constexpr bool hasAny(OpenMode mode, OpenMode flags) {
    return (mode & flags) != OpenMode{};
}

// Platform failures are not thrown: they show as 0 bytes or false, and isDiskFull() tells that one case
// apart.
//
// Small reads are served from a block read ahead, so that reading text costs few platform calls. Size and
// position are the stream's own all the while. There is no reading ahead on raw devices, with
// FlagNoBuffering or FlagOverlapped, and where others may write the file (ShareReadWrite).
class FileStream final : public ByteStream {
  public:
    FileStream() = default;
    FileStream(FileStream&& other) noexcept;
    // Closes what was open here; the moved-from stream is closed.
    FileStream& operator=(FileStream&& other) noexcept;
    void swap(FileStream& other) noexcept;

    bool isReadable() const override { return readable_; }
    bool isWritable() const override { return writable_; }
    // Reads at most what remains. "stream is not open for reading"; "invalid pointer" for a null buffer and
    // "invalid size" for 0xFFFFFFFF bytes or more, both after the count was cut to what remains.
    std::size_t read(void* buffer, std::size_t count) override;
    // "stream is not open for writing", "invalid pointer", "invalid size" likewise.
    std::size_t write(const void* buffer, std::size_t count) override;
    std::int64_t size() const override { return size_; }
    std::int64_t position() const override { return pointer_ - static_cast<std::int64_t>(aheadCount()); }
    // "stream is closed".
    [[nodiscard]] bool seek(std::int64_t offset, SeekOrigin origin) override;
    // "file is not open for writing"; "invalid size" for a negative size. If the file cannot be cut or
    // extended it is closed.
    [[nodiscard]] bool setSize(std::int64_t newSize) override;

    // Closes any open file and opens `path`; the text encoding becomes `encoding`, the other settings stay.
    // False, and the stream is closed, when the file cannot be opened; an empty path is refused before
    // anything is closed. "invalid argument" for an unknown mode. A narrow path is in the system charset.
    [[nodiscard]] bool open(const std::u16string& path, OpenMode mode,
                            TextEncoding encoding = TextEncoding::None);
    [[nodiscard]] bool open(const std::string& narrowPath, OpenMode mode,
                            TextEncoding encoding = TextEncoding::None);
    void close();
    // Has the platform write everything to the disk. "file is not open for writing". False for a stream
    // opened with WriteThrough, without asking the platform. Compatible: callers tell the two apart by it.
    [[nodiscard]] bool flush();

    // The path of the last open that succeeded, in the system charset and as given; a failed one keeps it.
    std::string narrowPath() const;
    const std::u16string& path() const { return path_; }
    OpenMode openFlags() const { return openFlags_; }
    // Whether the last write, seek or resize failed because the disk is full; success of a later write, read,
    // flush or resize clears it. Promised surface, which the extension itself does not call.
    bool isDiskFull() const { return diskFull_; }

  private:
    bool movePointer(std::int64_t position);
    std::size_t readThrough(std::uint8_t* buffer, std::size_t count);
    bool readMoreAhead();

    std::u16string path_;
    bool readable_ = false;
    bool writable_ = false;
    std::int64_t size_ = 0;
    std::int64_t pointer_ = 0;  // the platform's file pointer: the position and what was read ahead
    OpenMode openFlags_{};
    bool diskFull_ = false;
    platform::FileHandle file_;
    std::vector<std::uint8_t> block_;  // holds ahead_..aheadEnd_
};

inline void swap(FileStream& a, FileStream& b) noexcept {
    a.swap(b);
}

}  // namespace owlkit
