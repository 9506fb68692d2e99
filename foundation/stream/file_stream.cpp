#include "foundation/stream/file_stream.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"

namespace owlkit {
namespace {

constexpr std::size_t kTransferLimit = 0xFFFFFFFF;  // the first count that one platform call cannot have
constexpr std::size_t kReadAhead = 16384;           // bytes

constexpr std::uint32_t kModeMask = 0xF;
constexpr std::uint32_t kShareMask = 0xF0;

struct Mode {
    std::uint32_t access;
    std::uint32_t creation;
    std::uint32_t share;
    bool append;
};

constexpr std::uint32_t kBothAccesses = platform::kGenericRead | platform::kGenericWrite;

// By OpenMode.
constexpr Mode kModes[] = {
    {platform::kGenericRead, platform::kOpenExisting, platform::kFileShareRead, false},
    {kBothAccesses, platform::kOpenExisting, 0, false},
    {platform::kGenericWrite, platform::kCreateAlways, 0, false},
    {kBothAccesses, platform::kCreateAlways, 0, false},
    {platform::kGenericWrite, platform::kOpenAlways, 0, true},
    {kBothAccesses, platform::kOpenAlways, 0, true},
};

std::uint32_t shareOf(std::uint32_t flags, const Mode& mode) {
    switch (flags & kShareMask) {
        case kShareReadWrite:
            return platform::kFileShareRead | platform::kFileShareWrite;
        case kShareRead:
            return platform::kFileShareRead;
        case kShareNone:
            return 0;
        default:
            return mode.share;
    }
}

std::uint32_t attributesOf(std::uint32_t flags) {
    if ((flags & kRawDevice) != 0)
        return 0;
    const auto given = [flags](std::uint32_t flag, std::uint32_t value) {
        return (flags & flag) != 0 ? value : 0;
    };
    const std::uint32_t attributes = given(kAttributeArchive, platform::kFileAttributeArchive) |
                                     given(kAttributeEncrypted, platform::kFileAttributeEncrypted) |
                                     given(kAttributeHidden, platform::kFileAttributeHidden) |
                                     given(kAttributeReadOnly, platform::kFileAttributeReadOnly) |
                                     given(kAttributeTemporary, platform::kFileAttributeTemporary);
    return (attributes != 0 ? attributes : platform::kFileAttributeNormal) |
           given(kFlagNoBuffering, platform::kFileFlagNoBuffering) |
           given(kFlagOverlapped, platform::kFileFlagOverlapped) |
           given(kFlagRandomAccess, platform::kFileFlagRandomAccess) |
           given(kFlagSequentialScan, platform::kFileFlagSequentialScan) |
           given(kFlagWriteThrough, platform::kFileFlagWriteThrough);
}

bool readsAhead(std::uint32_t flags) {
    return (flags & (kRawDevice | kFlagNoBuffering | kFlagOverlapped)) == 0 &&
           (flags & kShareMask) != kShareReadWrite;
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
    narrowPath_.swap(other.narrowPath_);
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

bool FileStream::open(const std::u16string& path, std::uint32_t flags, std::uint32_t encoding) {
    if (path.empty())
        return false;
    close();
    if ((flags & kModeMask) >= std::size(kModes))
        throwInvalidArgument();
    const Mode& mode = kModes[flags & kModeMask];
    // 0x100 sets the very bit that also asks the platform for it; this is deliberate.
    if ((flags & kWriteThrough) != 0)
        flags |= kFlagWriteThrough;
    std::string narrowPath = ToNarrow(path, kCharsetSystem);
    platform::FileHandle file;
    if (platform::createFile(path, mode.access, shareOf(flags, mode), mode.creation, attributesOf(flags),
                             file) != platform::kSuccess)
        return false;
    std::int64_t size = 0;
    if (((flags & kRawDevice) != 0 ? platform::diskLength(file, size) : platform::fileSize(file, size)) !=
        platform::kSuccess)
        return false;
    file_ = std::move(file);
    readable_ = (mode.access & platform::kGenericRead) != 0;
    writable_ = (mode.access & platform::kGenericWrite) != 0;
    size_ = size;
    openFlags_ = flags;
    if (mode.append && !seek(0, kFromEnd)) {
        close();
        return false;
    }
    setTextEncoding(encoding);
    path_ = path;
    narrowPath_ = std::move(narrowPath);
    return true;
}

bool FileStream::open(const std::string& narrowPath, std::uint32_t flags, std::uint32_t encoding) {
    return open(ToWide(narrowPath, kCharsetSystem), flags, encoding);
}

void FileStream::close() {
    file_.reset();
    readable_ = false;
    writable_ = false;
    size_ = 0;
    pointer_ = 0;
    openFlags_ = 0;
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
    if (buffer == nullptr && count != 0)
        throwInvalidPointer();
    if (count == 0)
        return 0;
    if (count >= kTransferLimit)
        throwInvalidSize();
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
    if (const platform::ErrorCode error = platform::setFilePointer(file_, position)) {
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
    if (buffer == nullptr && count != 0)
        throwInvalidPointer();
    if (count == 0)
        return 0;
    if (count >= kTransferLimit)
        throwInvalidSize();
    if (aheadCount() != 0 && !movePointer(position()))
        return 0;
    std::uint32_t written = 0;
    const platform::ErrorCode error =
        platform::writeFile(file_, buffer, static_cast<std::uint32_t>(count), written);
    diskFull_ = error == platform::kErrorDiskFull;
    pointer_ += written;
    size_ = std::max(size_, pointer_);
    return written;
}

bool FileStream::seek(std::int64_t offset, std::uint32_t origin) {
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
    if (const platform::ErrorCode error = platform::setEndOfFile(file_)) {
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
    if ((openFlags_ & kWriteThrough) != 0 || platform::flushFileBuffers(file_) != platform::kSuccess)
        return false;
    diskFull_ = false;
    return true;
}

}  // namespace owlkit
