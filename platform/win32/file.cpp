#include "platform/file.h"

#include "platform/one_name.h"
#include "platform/win32/long_path.h"
#include "platform/win32/win32_api.h"

#include <winioctl.h>

namespace platform {

static_assert(kGenericRead == GENERIC_READ);
static_assert(kGenericWrite == GENERIC_WRITE);
static_assert(kFileShareRead == FILE_SHARE_READ);
static_assert(kFileShareWrite == FILE_SHARE_WRITE);
static_assert(kCreateNew == CREATE_NEW);
static_assert(kCreateAlways == CREATE_ALWAYS);
static_assert(kOpenExisting == OPEN_EXISTING);
static_assert(kOpenAlways == OPEN_ALWAYS);
static_assert(kTruncateExisting == TRUNCATE_EXISTING);
static_assert(kInvalidFileAttributes == INVALID_FILE_ATTRIBUTES);
static_assert(kFileAttributeReadOnly == FILE_ATTRIBUTE_READONLY);
static_assert(kFileAttributeHidden == FILE_ATTRIBUTE_HIDDEN);
static_assert(kFileAttributeDirectory == FILE_ATTRIBUTE_DIRECTORY);
static_assert(kFileAttributeArchive == FILE_ATTRIBUTE_ARCHIVE);
static_assert(kFileAttributeNormal == FILE_ATTRIBUTE_NORMAL);
static_assert(kFileAttributeTemporary == FILE_ATTRIBUTE_TEMPORARY);
static_assert(kFileAttributeEncrypted == FILE_ATTRIBUTE_ENCRYPTED);
static_assert(kFileFlagSequentialScan == FILE_FLAG_SEQUENTIAL_SCAN);
static_assert(kFileFlagRandomAccess == FILE_FLAG_RANDOM_ACCESS);
static_assert(kFileFlagNoBuffering == FILE_FLAG_NO_BUFFERING);
static_assert(kFileFlagOverlapped == FILE_FLAG_OVERLAPPED);
static_assert(kFileFlagWriteThrough == FILE_FLAG_WRITE_THROUGH);
static_assert(IOCTL_DISK_GET_LENGTH_INFO == 0x7405C);

namespace {

// The text that `fill` (a call of the GetTempPathW kind) puts into a buffer of `bufferSize` code units.
template <class Fill>
std::optional<std::u16string> bufferedText(std::size_t bufferSize, Fill fill) {
    std::u16string buffer(bufferSize, u'\0');
    const DWORD length = fill(static_cast<DWORD>(bufferSize), wide(buffer.data()));
    if (length == 0 || length >= bufferSize)
        return std::nullopt;
    buffer.resize(length);
    return buffer;
}

struct FindTraits {
    using Type = HANDLE;
    static Type none() { return INVALID_HANDLE_VALUE; }
    static void close(Type search) noexcept { FindClose(search); }
};

}  // namespace

void FileTraits::close(Type file) noexcept {
    CloseHandle(file);
}

Status createFile(const std::u16string& path, std::uint32_t access, std::uint32_t share,
                  std::uint32_t creation, std::uint32_t attributes, FileHandle& file) {
    if (!isOneName(path))
        return kErrorInvalidName;
    const HANDLE handle =
        CreateFileW(wide(SystemPath(path).text()), access, share, nullptr, creation, attributes, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return lastError();
    file.reset(handle);
    return kSuccess;
}

Status readFile(const FileHandle& file, void* buffer, std::uint32_t count, std::uint32_t& transferred) {
    DWORD moved = 0;
    const Status error = outcome(ReadFile(file.get(), buffer, count, &moved, nullptr));
    transferred = error == kSuccess ? moved : 0;
    return error;
}

Status writeFile(const FileHandle& file, const void* buffer, std::uint32_t count,
                 std::uint32_t& transferred) {
    DWORD moved = 0;
    const Status error = outcome(WriteFile(file.get(), buffer, count, &moved, nullptr));
    transferred = error == kSuccess ? moved : 0;
    return error;
}

Status setFilePointer(const FileHandle& file, std::int64_t position) {
    LARGE_INTEGER distance;
    distance.QuadPart = position;
    return outcome(SetFilePointerEx(file.get(), distance, nullptr, FILE_BEGIN));
}

Status setEndOfFile(const FileHandle& file) {
    return outcome(SetEndOfFile(file.get()));
}

Status flushFileBuffers(const FileHandle& file) {
    return outcome(FlushFileBuffers(file.get()));
}

Status fileSize(const FileHandle& file, std::int64_t& size) {
    LARGE_INTEGER value;
    const Status error = outcome(GetFileSizeEx(file.get(), &value));
    if (error == kSuccess)
        size = value.QuadPart;
    return error;
}

Status diskLength(const FileHandle& file, std::int64_t& size) {
    GET_LENGTH_INFORMATION information = {};
    DWORD returned = 0;
    const Status error = outcome(DeviceIoControl(file.get(), IOCTL_DISK_GET_LENGTH_INFO, nullptr, 0,
                                                 &information, sizeof information, &returned, nullptr));
    if (error == kSuccess)
        size = information.Length.QuadPart;
    return error;
}

std::uint32_t fileAttributes(const std::u16string& path) {
    return isOneName(path) ? GetFileAttributesW(wide(SystemPath(path).text())) : kInvalidFileAttributes;
}

Status deleteFile(const std::u16string& path) {
    return isOneName(path) ? outcome(DeleteFileW(wide(SystemPath(path).text()))) : kErrorInvalidName;
}

std::optional<std::vector<std::u16string>> listFolder(const std::u16string& folder) {
    if (!isOneName(folder))
        return std::nullopt;
    std::u16string pattern = folder;
    if (!pattern.empty() && pattern.back() != u'\\' && pattern.back() != u'/')
        pattern += kPathSeparator;
    pattern += u'*';
    WIN32_FIND_DATAW found;
    const UniqueHandle<FindTraits> search(FindFirstFileW(wide(SystemPath(pattern).text()), &found));
    std::vector<std::u16string> names;
    // A drive's root may be empty; any other folder holds at least itself.
    if (!search && GetLastError() == ERROR_FILE_NOT_FOUND)
        return names;
    if (!search)
        return std::nullopt;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            names.emplace_back(reinterpret_cast<const char16_t*>(found.cFileName));
    } while (FindNextFileW(search.get(), &found));
    if (GetLastError() != ERROR_NO_MORE_FILES)
        return std::nullopt;
    return names;
}

std::optional<std::u16string> tempPath(std::size_t bufferSize) {
    return bufferedText(bufferSize, [](DWORD size, wchar_t* buffer) { return GetTempPathW(size, buffer); });
}

std::optional<std::u16string> currentDirectory(std::size_t bufferSize) {
    return bufferedText(bufferSize,
                        [](DWORD size, wchar_t* buffer) { return GetCurrentDirectoryW(size, buffer); });
}

}  // namespace platform
