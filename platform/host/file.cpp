#include "platform/file.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <mutex>

#include "platform/host/fault.h"
#include "platform/host/file_host.h"
#include "platform/host/utf8.h"
#include "platform/one_name.h"

namespace platform {
namespace {

struct HostFile {
    int descriptor;
};

host::CreateFileArguments& lastArguments() {
    static host::CreateFileArguments arguments;
    return arguments;
}

void record(host::CreateFileArguments arguments) {
    static std::mutex guard;
    const std::lock_guard lock(guard);
    lastArguments() = std::move(arguments);
}

std::optional<std::uint32_t>& writeLimit() {
    static std::optional<std::uint32_t> bytes;
    return bytes;
}

std::atomic<int>& openFiles() {
    static std::atomic<int> count = 0;
    return count;
}

Status errorOf(int number) {
    switch (number) {
        case 0:
            return kSuccess;
        case ENOENT:
            return kErrorFileNotFound;
        case ENOTDIR:
            return kErrorPathNotFound;
        case EEXIST:
            return kErrorFileExists;
        case ENOSPC:
        case EDQUOT:
            return kErrorDiskFull;
        case ENOMEM:
            return kErrorNotEnoughMemory;
        case EINVAL:
        case EFBIG:
            return kErrorInvalidParameter;
        default:  // EACCES, EPERM, EROFS, EISDIR; EBADF for a transfer that the handle was not opened for
            return kErrorAccessDenied;
    }
}

Status outcome(bool succeeded) {
    return succeeded ? kSuccess : errorOf(errno);
}

int descriptorOf(const FileHandle& file) {
    return file ? static_cast<const HostFile*>(file.get())->descriptor : -1;
}

// The fault for `operation`, or the error of a handle that holds no file.
Status enter(const char* operation, const FileHandle& file) {
    const Status error = fault::next(operation);
    return error != kSuccess ? error : file ? kSuccess : kErrorInvalidHandle;
}

// Asked for by mode, not by access(2): that one refuses root nothing.
bool isReadOnly(const struct stat& status) {
    return (status.st_mode & S_IWUSR) == 0;
}

int openMode(std::uint32_t access, std::uint32_t creation) {
    const bool reads = (access & kGenericRead) != 0;
    const bool writes = (access & kGenericWrite) != 0;
    int mode = O_CLOEXEC | (writes ? reads ? O_RDWR : O_WRONLY : O_RDONLY);
    if (creation == kCreateNew)
        mode |= O_CREAT | O_EXCL;
    else if (creation == kCreateAlways)
        mode |= O_CREAT | O_TRUNC;
    else if (creation == kOpenAlways)
        mode |= O_CREAT;
    else if (creation == kTruncateExisting)
        mode |= O_TRUNC;
    return mode;
}

// The bytes that a transfer of `count` may move: half of them when a fault cuts it short.
std::uint32_t granted(const char* operation, std::uint32_t count) {
    return fault::next(operation) != kSuccess ? count / 2 : count;
}

// Transfers with `step` (read or write over the rest) until `count` bytes moved or it moves none.
template <class Step>
Status transfer(std::uint32_t count, std::uint32_t& transferred, Step step) {
    while (transferred < count) {
        const ssize_t moved = step(transferred, count - transferred);
        if (moved < 0 && errno == EINTR)
            continue;
        if (moved < 0)
            return errorOf(errno);
        if (moved == 0)
            break;
        transferred += static_cast<std::uint32_t>(moved);
    }
    return kSuccess;
}

std::optional<std::u16string> fitted(std::u16string text, std::size_t bufferSize) {
    if (text.size() >= bufferSize)
        return std::nullopt;
    return text;
}

}  // namespace

namespace host {

const CreateFileArguments& lastCreateFile() {
    return lastArguments();
}

void limitWrites(std::optional<std::uint32_t> bytes) {
    writeLimit() = bytes;
}

int openFileCount() {
    return openFiles();
}

void resetFiles() {
    writeLimit().reset();
    lastArguments() = {};
}

}  // namespace host

void FileTraits::close(Type file) noexcept {
    const std::unique_ptr<HostFile> owned(static_cast<HostFile*>(file));
    ::close(owned->descriptor);
    --openFiles();
}

Status createFile(const std::u16string& path, std::uint32_t access, std::uint32_t share,
                  std::uint32_t creation, std::uint32_t attributes, FileHandle& file) {
    if (const Status error = fault::next("CreateFileW"); !error.succeeded())
        return error;
    record({path, access, share, creation, attributes});
    if (!isOneName(path))
        return kErrorInvalidName;
    const std::string name = toHostName(path);
    struct stat status = {};
    if (::stat(name.c_str(), &status) == 0) {
        const bool changes = (access & kGenericWrite) != 0 || creation == kCreateAlways;
        if (S_ISDIR(status.st_mode) || (changes && isReadOnly(status)))
            return kErrorAccessDenied;
    }
    const mode_t permissions = (attributes & kFileAttributeReadOnly) != 0 ? 0444 : 0644;
    auto opened = std::make_unique<HostFile>();
    opened->descriptor = ::open(name.c_str(), openMode(access, creation), permissions);
    if (opened->descriptor < 0)
        return errorOf(errno);
    file.reset(opened.release());
    ++openFiles();
    return kSuccess;
}

Status readFile(const FileHandle& file, void* buffer, std::uint32_t count, std::uint32_t& transferred) {
    transferred = 0;
    if (const Status error = enter("ReadFile", file); !error.succeeded())
        return error;
    count = granted("ReadFile, short", count);
    const Status error = transfer(count, transferred, [&](std::uint32_t done, std::uint32_t left) {
        return ::read(descriptorOf(file), static_cast<char*>(buffer) + done, left);
    });
    if (error != kSuccess)
        transferred = 0;
    return error;
}

Status writeFile(const FileHandle& file, const void* buffer, std::uint32_t count,
                 std::uint32_t& transferred) {
    transferred = 0;
    if (const Status error = enter("WriteFile", file); !error.succeeded())
        return error;
    count = std::min(count, writeLimit().value_or(count));
    count = granted("WriteFile, short", count);
    const Status error = transfer(count, transferred, [&](std::uint32_t done, std::uint32_t left) {
        return ::write(descriptorOf(file), static_cast<const char*>(buffer) + done, left);
    });
    if (error != kSuccess && transferred != 0) {
        // A failed write moves the file pointer by nothing.
        ::lseek(descriptorOf(file), -static_cast<off_t>(transferred), SEEK_CUR);
        transferred = 0;
    }
    return error;
}

Status setFilePointer(const FileHandle& file, std::int64_t position) {
    if (const Status error = enter("SetFilePointerEx", file); !error.succeeded())
        return error;
    return outcome(::lseek(descriptorOf(file), position, SEEK_SET) >= 0);
}

Status setEndOfFile(const FileHandle& file) {
    if (const Status error = enter("SetEndOfFile", file); !error.succeeded())
        return error;
    const off_t end = ::lseek(descriptorOf(file), 0, SEEK_CUR);
    return outcome(end >= 0 && ::ftruncate(descriptorOf(file), end) == 0);
}

Status flushFileBuffers(const FileHandle& file) {
    if (const Status error = enter("FlushFileBuffers", file); !error.succeeded())
        return error;
    return outcome(::fsync(descriptorOf(file)) == 0);
}

Status fileSize(const FileHandle& file, std::int64_t& size) {
    if (const Status error = enter("GetFileSizeEx", file); !error.succeeded())
        return error;
    struct stat status = {};
    if (::fstat(descriptorOf(file), &status) != 0)
        return errorOf(errno);
    size = status.st_size;
    return kSuccess;
}

Status diskLength(const FileHandle& file, std::int64_t& size) {
    if (const Status error = enter("DeviceIoControl", file); !error.succeeded())
        return error;
    struct stat status = {};
    if (::fstat(descriptorOf(file), &status) != 0)
        return errorOf(errno);
    std::uint64_t length = static_cast<std::uint64_t>(status.st_size);
    if (S_ISBLK(status.st_mode) && ::ioctl(descriptorOf(file), BLKGETSIZE64, &length) != 0)
        return errorOf(errno);
    size = static_cast<std::int64_t>(length);
    return kSuccess;
}

std::uint32_t fileAttributes(const std::u16string& path) {
    struct stat status = {};
    if (fault::next("GetFileAttributesW") != kSuccess || !isOneName(path))
        return kInvalidFileAttributes;
    const std::string name = toHostName(path);
    // A link that leads nowhere is there all the same.
    if (::stat(name.c_str(), &status) != 0 && ::lstat(name.c_str(), &status) != 0)
        return kInvalidFileAttributes;
    const std::uint32_t readOnly = isReadOnly(status) ? kFileAttributeReadOnly : 0;
    if (S_ISDIR(status.st_mode))
        return kFileAttributeDirectory | readOnly;
    return readOnly != 0 ? readOnly : kFileAttributeNormal;
}

Status deleteFile(const std::u16string& path) {
    if (const Status error = fault::next("DeleteFileW"); !error.succeeded())
        return error;
    if (!isOneName(path))
        return kErrorInvalidName;
    const std::string name = toHostName(path);
    struct stat status = {};
    // A link goes, not what it leads to; one to a folder counts as a folder.
    if (::stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
        return kErrorAccessDenied;
    if (::lstat(name.c_str(), &status) == 0 && isReadOnly(status))
        return kErrorAccessDenied;
    return outcome(::unlink(name.c_str()) == 0);
}

std::optional<std::vector<std::u16string>> listFolder(const std::u16string& folder) {
    if (fault::next("FindFirstFileW") != kSuccess || !isOneName(folder))
        return std::nullopt;
    const std::string name = folder.empty() ? "." : toHostName(folder);
    const std::unique_ptr<DIR, int (*)(DIR*)> search(::opendir(name.c_str()), &::closedir);
    if (!search)
        return std::nullopt;
    std::vector<std::u16string> names;
    for (;;) {
        errno = fault::next("FindNextFileW") != kSuccess ? EIO : 0;
        const dirent* entry = errno == 0 ? ::readdir(search.get()) : nullptr;
        if (!entry && errno != 0)
            return std::nullopt;
        if (!entry)
            return names;
        struct stat status = {};
        if (::fstatat(::dirfd(search.get()), entry->d_name, &status, 0) == 0 && !S_ISDIR(status.st_mode))
            names.push_back(fromHostName(entry->d_name));
    }
}

std::optional<std::u16string> tempPath(std::size_t bufferSize) {
    if (fault::next("GetTempPathW") != kSuccess)
        return std::nullopt;
    const char* set = std::getenv("TMPDIR");
    std::u16string folder = fromHostName(set != nullptr && *set != '\0' ? set : "/tmp");
    if (folder.back() != kPathSeparator)
        folder += kPathSeparator;
    return fitted(std::move(folder), bufferSize);
}

std::optional<std::u16string> currentDirectory(std::size_t bufferSize) {
    if (fault::next("GetCurrentDirectoryW") != kSuccess)
        return std::nullopt;
    const std::unique_ptr<char, void (*)(void*)> folder(::getcwd(nullptr, 0), &std::free);
    if (!folder)
        return std::nullopt;
    return fitted(fromHostName(folder.get()), bufferSize);
}

}  // namespace platform
