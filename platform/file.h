// Files, folders and raw devices. Every function stands for the one platform call that its comment names and
// carries that call's arguments. Paths are UTF-16; on the host they become UTF-8 names. One with a zero
// inside is refused (platform/one_name.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/error.h"
#include "platform/handle.h"

namespace platform {

#ifdef _WIN32
inline constexpr char16_t kPathSeparator = u'\\';
#else
inline constexpr char16_t kPathSeparator = u'/';
#endif

// Access.
inline constexpr std::uint32_t kGenericRead = 0x80000000;
inline constexpr std::uint32_t kGenericWrite = 0x40000000;

// Sharing; 0 shares nothing.
inline constexpr std::uint32_t kFileShareRead = 1;
inline constexpr std::uint32_t kFileShareWrite = 2;

// Creation.
inline constexpr std::uint32_t kCreateNew = 1;
inline constexpr std::uint32_t kCreateAlways = 2;
inline constexpr std::uint32_t kOpenExisting = 3;
inline constexpr std::uint32_t kOpenAlways = 4;
inline constexpr std::uint32_t kTruncateExisting = 5;

// Attributes.
inline constexpr std::uint32_t kInvalidFileAttributes = 0xFFFFFFFF;
inline constexpr std::uint32_t kFileAttributeReadOnly = 0x1;
inline constexpr std::uint32_t kFileAttributeHidden = 0x2;
inline constexpr std::uint32_t kFileAttributeDirectory = 0x10;
inline constexpr std::uint32_t kFileAttributeArchive = 0x20;
inline constexpr std::uint32_t kFileAttributeNormal = 0x80;
inline constexpr std::uint32_t kFileAttributeTemporary = 0x100;
inline constexpr std::uint32_t kFileAttributeEncrypted = 0x4000;

// Flags beside the attributes.
inline constexpr std::uint32_t kFileFlagSequentialScan = 0x08000000;
inline constexpr std::uint32_t kFileFlagRandomAccess = 0x10000000;
inline constexpr std::uint32_t kFileFlagNoBuffering = 0x20000000;
inline constexpr std::uint32_t kFileFlagOverlapped = 0x40000000;
inline constexpr std::uint32_t kFileFlagWriteThrough = 0x80000000;

struct FileTraits {
    using Type = void*;
    static constexpr Type none() { return nullptr; }
    static void close(Type file) noexcept;  // CloseHandle
};
using FileHandle = UniqueHandle<FileTraits>;

// CreateFileW without security attributes or template. On failure `file` keeps what it held. On the host
// sharing and all attributes but read-only are recorded (host/file_host.h) and otherwise ignored.
Status createFile(const std::u16string& path, std::uint32_t access, std::uint32_t share,
                  std::uint32_t creation, std::uint32_t attributes, FileHandle& file);

// ReadFile and WriteFile at the file pointer, which moves by the bytes that were transferred. Counts are
// bytes; the transferred count is 0 on failure. Reading at the end succeeds with 0 bytes.
Status readFile(const FileHandle& file, void* buffer, std::uint32_t count, std::uint32_t& transferred);
Status writeFile(const FileHandle& file, const void* buffer, std::uint32_t count, std::uint32_t& transferred);

// SetFilePointerEx with FILE_BEGIN: moves the file pointer to `position` bytes from the start. Past the end
// is allowed.
Status setFilePointer(const FileHandle& file, std::int64_t position);

// SetEndOfFile: cuts or extends the file to the file pointer.
Status setEndOfFile(const FileHandle& file);

// FlushFileBuffers.
Status flushFileBuffers(const FileHandle& file);

// GetFileSizeEx, in bytes. `size` is unchanged on failure.
Status fileSize(const FileHandle& file, std::int64_t& size);

// DeviceIoControl with IOCTL_DISK_GET_LENGTH_INFO (0x7405C): the length in bytes of a raw device or volume.
// On the host a plain file may stand for a device. `size` is unchanged on failure.
Status diskLength(const FileHandle& file, std::int64_t& size);

// GetFileAttributesW; kInvalidFileAttributes when they cannot be read.
[[nodiscard]] std::uint32_t fileAttributes(const std::u16string& path);

// DeleteFileW. Of a link, the link is deleted and its target stays.
Status deleteFile(const std::u16string& path);

// FindFirstFileW and FindNextFileW over everything in `folder` (with or without a separator at its end; empty
// = the current folder): the plain names of its files, folders left out, in the platform's order. Nothing
// when the folder cannot be listed to its end.
[[nodiscard]] std::optional<std::vector<std::u16string>> listFolder(const std::u16string& folder);

// GetTempPathW and GetCurrentDirectoryW with a buffer of `bufferSize` code units, the final zero included;
// nothing when the call fails or the text does not fit. The temporary folder ends in a separator.
[[nodiscard]] std::optional<std::u16string> tempPath(std::size_t bufferSize);
[[nodiscard]] std::optional<std::u16string> currentDirectory(std::size_t bufferSize);

}  // namespace platform
