#include "foundation/stream/file_stream.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"

namespace owlkit {
namespace {

constexpr std::size_t kReadAhead = 16384;  // bytes

constexpr OpenMode kAccessMask{0xF};
constexpr OpenMode kShareMask{0xF0};

struct Access {
    std::uint32_t access;
    std::uint32_t creation;
    std::uint32_t share;
    bool append;
};

constexpr std::uint32_t kBothAccesses = platform::kGenericRead | platform::kGenericWrite;

// By the low four bits of an OpenMode.
constexpr Access kAccesses[] = {
    {platform::kGenericRead, platform::kOpenExisting, platform::kFileShareRead, false},
    {kBothAccesses, platform::kOpenExisting, 0, false},
    {platform::kGenericWrite, platform::kCreateAlways, 0, false},
    {kBothAccesses, platform::kCreateAlways, 0, false},
    {platform::kGenericWrite, platform::kOpenAlways, 0, true},
    {kBothAccesses, platform::kOpenAlways, 0, true},
};

std::uint32_t shareOf(OpenMode mode, const Access& access) {
    const OpenMode share = mode & kShareMask;
    if (share == OpenMode::ShareReadWrite)
        return platform::kFileShareRead | platform::kFileShareWrite;
    if (share == OpenMode::ShareRead)
        return platform::kFileShareRead;
    return share == OpenMode::ShareNone ? 0 : access.share;
}

std::uint32_t attributesOf(OpenMode mode) {
    if (hasAny(mode, OpenMode::RawDevice))
        return 0;
    const auto given = [mode](OpenMode flag, std::uint32_t value) { return hasAny(mode, flag) ? value : 0; };
    const std::uint32_t attributes = given(OpenMode::AttributeArchive, platform::kFileAttributeArchive) |
                                     given(OpenMode::AttributeEncrypted, platform::kFileAttributeEncrypted) |
                                     given(OpenMode::AttributeHidden, platform::kFileAttributeHidden) |
                                     given(OpenMode::AttributeReadOnly, platform::kFileAttributeReadOnly) |
                                     given(OpenMode::AttributeTemporary, platform::kFileAttributeTemporary);
    return (attributes != 0 ? attributes : platform::kFileAttributeNormal) |
           given(OpenMode::FlagNoBuffering, platform::kFileFlagNoBuffering) |
           given(OpenMode::FlagOverlapped, platform::kFileFlagOverlapped) |
           given(OpenMode::FlagRandomAccess, platform::kFileFlagRandomAccess) |
           given(OpenMode::FlagSequentialScan, platform::kFileFlagSequentialScan) |
           given(OpenMode::FlagWriteThrough, platform::kFileFlagWriteThrough);
}

bool readsAhead(OpenMode mode) {
    return !hasAny(mode, OpenMode::RawDevice | OpenMode::FlagNoBuffering | OpenMode::FlagOverlapped) &&
           (mode & kShareMask) != OpenMode::ShareReadWrite;
}

}  // namespace

FileStream::FileStream(FileStream&& other) noexcept {
    swap(other);
}

FileStream& FileStream::operator=(FileStream&& other) noexcept {
    FileStream taken(std::move(other));
    swap(taken);
    return *this;
}

void FileStream::swap(FileStream& other) noexcept {
    swapByteStream(other);
    path_.swap(other.path_);
    std::swap(readable_, other.readable_);
    std::swap(writable_, other.writable_);
    std::swap(size_, other.size_);
    std::swap(pointer_, other.pointer_);
    std::swap(openFlags_, other.openFlags_);
    std::swap(diskFull_, other.diskFull_);
    std::swap(file_, other.file_);
    block_.swap(other.block_);
}

bool FileStream::open(const std::u16string& path, OpenMode mode, TextEncoding encoding) {
    if (path.empty())
        return false;
    close();
    const auto row = static_cast<std::size_t>(mode & kAccessMask);
    if (row >= std::size(kAccesses))
        throwInvalidArgument();
    const Access& access = kAccesses[row];
    if (hasAny(mode, OpenMode::WriteThrough))
        mode = mode | OpenMode::FlagWriteThrough;
    platform::FileHandle file;
    if (!platform::createFile(path, access.access, shareOf(mode, access), access.creation, attributesOf(mode),
                              file)
             .succeeded())
        return false;
    std::int64_t size = 0;
    const auto sizeOf = hasAny(mode, OpenMode::RawDevice) ? platform::diskLength : platform::fileSize;
    if (!sizeOf(file, size).succeeded())
        return false;
    file_ = std::move(file);
    readable_ = (access.access & platform::kGenericRead) != 0;
    writable_ = (access.access & platform::kGenericWrite) != 0;
    size_ = size;
    openFlags_ = mode;
    if (access.append && !seek(0, SeekOrigin::End)) {
        close();
        return false;
    }
    setTextEncoding(encoding);
    path_ = path;
    return true;
}

std::string FileStream::narrowPath() const {
    return ToNarrow(path_, kCharsetSystem);
}

bool FileStream::open(const std::string& narrowPath, OpenMode mode, TextEncoding encoding) {
    return open(ToWide(narrowPath, kCharsetSystem), mode, encoding);
}

void FileStream::close() {
    file_.reset();
    readable_ = false;
    writable_ = false;
    size_ = 0;
    pointer_ = 0;
    openFlags_ = {};
    diskFull_ = false;
    ahead_ = nullptr;
    aheadEnd_ = nullptr;
    block_.clear();
}

std::size_t FileStream::read(void* buffer, std::size_t count) {
    if (!readable_)
        throwNotOpenForReading();
    count = static_cast<std::size_t>(
        std::min<std::uint64_t>(count, static_cast<std::uint64_t>(size_ - position())));
    checkTransfer(buffer, count);
    if (count == 0)
        return 0;
    if (count > aheadCount()) {
        // A block that cannot be read may fail behind the bytes that are wanted.
        if (count > kReadAhead || !readsAhead(openFlags_) || !readMoreAhead())
            return readThrough(static_cast<std::uint8_t*>(buffer), count);
    }
    count = std::min(count, aheadCount());
    std::memcpy(buffer, ahead_, count);
    ahead_ += count;
    diskFull_ = false;
    return count;
}

// Reads what was not read ahead straight into `buffer`, behind what was. A failure leaves the position and
// what was read ahead as they are.
std::size_t FileStream::readThrough(std::uint8_t* buffer, std::size_t count) {
    const std::size_t ready = aheadCount();
    std::uint32_t got = 0;
    if (platform::readFile(file_, buffer + ready, static_cast<std::uint32_t>(count - ready), got) !=
        platform::kSuccess)
        return 0;
    if (ready != 0)
        std::memcpy(buffer, ahead_, ready);
    ahead_ = aheadEnd_;
    pointer_ += got;
    diskFull_ = false;
    return ready + got;
}

// Fills the block behind what is left in it, which moves to its start.
bool FileStream::readMoreAhead() {
    const std::size_t ready = aheadCount();
    block_.resize(kReadAhead);
    if (ready != 0)
        std::memmove(block_.data(), ahead_, ready);
    ahead_ = block_.data();
    aheadEnd_ = ahead_ + ready;
    const std::int64_t wanted = std::min(static_cast<std::int64_t>(kReadAhead - ready), size_ - pointer_);
    std::uint32_t got = 0;
    if (platform::readFile(file_, block_.data() + ready, static_cast<std::uint32_t>(wanted), got) !=
        platform::kSuccess)
        return false;
    aheadEnd_ += got;
    pointer_ += got;
    return true;
}

// Moves the platform's pointer and the position with it; what was read ahead is dropped.
bool FileStream::movePointer(std::int64_t position) {
    if (const platform::Status error = platform::setFilePointer(file_, position); !error.succeeded()) {
        diskFull_ = error == platform::kErrorDiskFull;
        return false;
    }
    pointer_ = position;
    ahead_ = aheadEnd_;
    return true;
}

std::size_t FileStream::write(const void* buffer, std::size_t count) {
    if (!writable_)
        throwNotOpenForWriting();
    checkTransfer(buffer, count);
    if (count == 0)
        return 0;
    if (aheadCount() != 0 && !movePointer(position()))
        return 0;
    std::uint32_t written = 0;
    const platform::Status error =
        platform::writeFile(file_, buffer, static_cast<std::uint32_t>(count), written);
    diskFull_ = error == platform::kErrorDiskFull;
    pointer_ += written;
    size_ = std::max(size_, pointer_);
    return written;
}

bool FileStream::seek(std::int64_t offset, SeekOrigin origin) {
    if (!isOpen())
        throwStreamClosed();
    const std::int64_t target = seekTarget(offset, origin);
    return target >= 0 && movePointer(target);
}

bool FileStream::setSize(std::int64_t newSize) {
    if (!writable_)
        throwFileNotWritable();
    if (newSize == size_)
        return true;
    if (newSize < 0)
        throwInvalidSize();
    const std::int64_t oldPosition = position();
    if (!movePointer(newSize))
        return false;
    if (const platform::Status error = platform::setEndOfFile(file_); !error.succeeded()) {
        close();
        diskFull_ = error == platform::kErrorDiskFull;
        return false;
    }
    size_ = newSize;
    diskFull_ = false;
    return oldPosition >= newSize || movePointer(oldPosition);
}

bool FileStream::flush() {
    if (!writable_)
        throwFileNotWritable();
    if (hasAny(openFlags_, OpenMode::WriteThrough) || !platform::flushFileBuffers(file_).succeeded())
        return false;
    diskFull_ = false;
    return true;
}

}  // namespace owlkit
