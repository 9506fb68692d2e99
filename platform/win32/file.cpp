#include "platform/file.h"

#include "platform/one_name.h"
#include "platform/win32/long_path.h"
#include "platform/win32/win32_api.h"

#include <winioctl.h>

namespace platform {
namespace {

ErrorCode outcome(BOOL succeeded) {
    return succeeded ? kSuccess : lastError();
}

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

ErrorCode createFile(const std::u16string& path, std::uint32_t access, std::uint32_t share,
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

ErrorCode readFile(const FileHandle& file, void* buffer, std::uint32_t count, std::uint32_t& transferred) {
    DWORD moved = 0;
    const ErrorCode error = outcome(ReadFile(file.get(), buffer, count, &moved, nullptr));
    transferred = error == kSuccess ? moved : 0;
    return error;
}

ErrorCode writeFile(const FileHandle& file, const void* buffer, std::uint32_t count,
                    std::uint32_t& transferred) {
    DWORD moved = 0;
    const ErrorCode error = outcome(WriteFile(file.get(), buffer, count, &moved, nullptr));
    transferred = error == kSuccess ? moved : 0;
    return error;
}

ErrorCode setFilePointer(const FileHandle& file, std::int64_t position) {
    LARGE_INTEGER distance;
    distance.QuadPart = position;
    return outcome(SetFilePointerEx(file.get(), distance, nullptr, FILE_BEGIN));
}

ErrorCode setEndOfFile(const FileHandle& file) {
    return outcome(SetEndOfFile(file.get()));
}

ErrorCode flushFileBuffers(const FileHandle& file) {
    return outcome(FlushFileBuffers(file.get()));
}

ErrorCode fileSize(const FileHandle& file, std::int64_t& size) {
    LARGE_INTEGER value;
    const ErrorCode error = outcome(GetFileSizeEx(file.get(), &value));
    if (error == kSuccess)
        size = value.QuadPart;
    return error;
}

ErrorCode diskLength(const FileHandle& file, std::int64_t& size) {
    GET_LENGTH_INFORMATION information = {};
    DWORD returned = 0;
    const ErrorCode error = outcome(DeviceIoControl(file.get(), IOCTL_DISK_GET_LENGTH_INFO, nullptr, 0,
                                                    &information, sizeof information, &returned, nullptr));
    if (error == kSuccess)
        size = information.Length.QuadPart;
    return error;
}

std::uint32_t fileAttributes(const std::u16string& path) {
    return isOneName(path) ? GetFileAttributesW(wide(SystemPath(path).text())) : kInvalidFileAttributes;
}

bool deleteFile(const std::u16string& path) {
    return isOneName(path) && DeleteFileW(wide(SystemPath(path).text())) != 0;
}

bool listFolder(const std::u16string& folder, std::vector<std::u16string>& names) {
    names.clear();
    if (!isOneName(folder))
        return false;
    std::u16string pattern = folder;
    if (!pattern.empty() && pattern.back() != u'\\' && pattern.back() != u'/')
        pattern += kPathSeparator;
    pattern += u'*';
    WIN32_FIND_DATAW found;
    const UniqueHandle<FindTraits> search(FindFirstFileW(wide(SystemPath(pattern).text()), &found));
    if (!search)
        // A drive's root may be empty; any other folder holds at least itself.
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            names.emplace_back(reinterpret_cast<const char16_t*>(found.cFileName));
    } while (FindNextFileW(search.get(), &found));
    if (GetLastError() == ERROR_NO_MORE_FILES)
        return true;
    names.clear();
    return false;
}

std::optional<std::u16string> tempPath(std::size_t bufferSize) {
    return bufferedText(bufferSize, [](DWORD size, wchar_t* buffer) { return GetTempPathW(size, buffer); });
}

std::optional<std::u16string> currentDirectory(std::size_t bufferSize) {
    return bufferedText(bufferSize,
                        [](DWORD size, wchar_t* buffer) { return GetCurrentDirectoryW(size, buffer); });
}

}  // namespace platform
