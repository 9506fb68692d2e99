// A byte stream over a platform file or a raw disk device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/stream/byte_stream.h"
#include "platform/file.h"

namespace owlkit {

// Open flags. The low four bits choose access and creation ...
enum OpenMode : std::uint32_t {
    kOpenRead = 0,         // existing file
    kOpenReadWrite = 1,    // existing file
    kCreateWrite = 2,      // emptied or new
    kCreateReadWrite = 3,  // emptied or new
    kAppendWrite = 4,      // existing or new, positioned at the end
    kAppendReadWrite = 5,  // existing or new, positioned at the end
};
// ... bits 4 to 7 the sharing (0: reading for kOpenRead, else none), and the rest how the platform treats the
// file.
inline constexpr std::uint32_t kShareReadWrite = 0x10;
inline constexpr std::uint32_t kShareRead = 0x20;
inline constexpr std::uint32_t kShareNone = 0x30;
inline constexpr std::uint32_t kWriteThrough = 0x100;  // sets kFlagWriteThrough too
inline constexpr std::uint32_t kRawDevice = 0x200;     // no attributes; the size is the device's length
inline constexpr std::uint32_t kAttributeArchive = 1u << 20;
inline constexpr std::uint32_t kAttributeEncrypted = 1u << 21;
inline constexpr std::uint32_t kAttributeHidden = 1u << 22;
inline constexpr std::uint32_t kAttributeReadOnly = 1u << 23;
inline constexpr std::uint32_t kAttributeTemporary = 1u << 24;
inline constexpr std::uint32_t kFlagNoBuffering = 1u << 26;
inline constexpr std::uint32_t kFlagOverlapped = 1u << 27;
inline constexpr std::uint32_t kFlagRandomAccess = 1u << 28;
inline constexpr std::uint32_t kFlagSequentialScan = 1u << 29;
inline constexpr std::uint32_t kFlagWriteThrough = 1u << 30;

// Platform failures are not thrown: they show as 0 bytes or false, and isDiskFull() tells that one case
// apart.
//
// Small reads are served from a block read ahead, so that reading text costs few platform calls. Size and
// position are the stream's own all the while. There is no reading ahead on raw devices, with
// kFlagNoBuffering or kFlagOverlapped, and where others may write the file (kShareReadWrite).
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
    bool seek(std::int64_t offset, std::uint32_t origin) override;
    // "file is not open for writing"; "invalid size" for a negative size. If the file cannot be cut or
    // extended it is closed.
    bool setSize(std::int64_t newSize) override;

    // Closes any open file and opens `path`; the text encoding becomes `encoding`, the other settings stay.
    // False, and the stream is closed, when the file cannot be opened; an empty path is refused before
    // anything is closed. "invalid argument" for an unknown mode. A narrow path is in the system charset.
    bool open(const std::u16string& path, std::uint32_t flags, std::uint32_t encoding = kEncodingNone);
    bool open(const std::string& narrowPath, std::uint32_t flags, std::uint32_t encoding = kEncodingNone);
    void close();
    // Has the platform write everything to the disk. "file is not open for writing". False for a stream
    // opened with kWriteThrough, without asking the platform; this is deliberate.
    bool flush();

    // The path last opened, in the system charset and as it was given.
    const std::string& narrowPath() const { return narrowPath_; }
    const std::u16string& path() const { return path_; }
    std::uint32_t openFlags() const { return openFlags_; }
    // Whether the last write, seek or resize failed because the disk is full; success of a later write, read,
    // flush or resize clears it.
    bool isDiskFull() const { return diskFull_; }

  private:
    bool movePointer(std::int64_t position);
    std::size_t readThrough(std::uint8_t* buffer, std::size_t count);
    bool readMoreAhead();

    std::string narrowPath_;
    std::u16string path_;
    bool readable_ = false;
    bool writable_ = false;
    std::int64_t size_ = 0;
    std::int64_t pointer_ = 0;  // the platform's file pointer: the position and what was read ahead
    std::uint32_t openFlags_ = 0;
    bool diskFull_ = false;
    platform::FileHandle file_;
    std::vector<std::uint8_t> block_;  // holds ahead_..aheadEnd_
};

inline void swap(FileStream& a, FileStream& b) noexcept {
    a.swap(b);
}

}  // namespace owlkit
