#include "foundation/stream/memory_stream.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "foundation/errors.h"

namespace owlkit {

MemoryStream::MemoryStream() = default;

MemoryStream::MemoryStream(const void* data, std::size_t size, bool writable) : writable_(writable) {
    if (data == nullptr && size != 0)
        throwInvalidPointer();
    if (size > static_cast<std::size_t>(kMaximumSize))
        throwInvalidSize();
    const std::uint8_t* bytes = static_cast<const std::uint8_t*>(data);
    bytes_.assign(bytes, bytes + size);
    setPosition(0);
}

MemoryStream::MemoryStream(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {
    if (bytes_.size() > static_cast<std::size_t>(kMaximumSize))
        throwInvalidSize();
    setPosition(0);
}

void MemoryStream::setPosition(std::size_t position) {
    ahead_ = bytes_.data() + position;
    aheadEnd_ = bytes_.data() + bytes_.size();
}

std::size_t MemoryStream::read(void* buffer, std::size_t count) {
    count = std::min(count, aheadCount());
    checkTransfer(buffer, count);
    if (count == 0)
        return 0;
    std::memcpy(buffer, ahead_, count);
    ahead_ += count;
    return count;
}

std::size_t MemoryStream::write(const void* buffer, std::size_t count) {
    if (!writable_)
        throwNotOpenForWriting();
    checkTransfer(buffer, count);
    if (count == 0)
        return 0;
    const std::size_t start = bytes_.size() - aheadCount();
    if (count > static_cast<std::size_t>(kMaximumSize) - start)
        throwInvalidSize();
    const std::uint8_t* bytes = static_cast<const std::uint8_t*>(buffer);
    const std::size_t inside = std::min(count, aheadCount());
    std::copy_n(bytes, inside, bytes_.begin() + static_cast<std::ptrdiff_t>(start));
    bytes_.insert(bytes_.end(), bytes + inside, bytes + count);
    setPosition(start + count);
    return count;
}

bool MemoryStream::seek(std::int64_t offset, SeekOrigin origin) {
    const std::int64_t target = seekTarget(offset, origin);
    if (target < 0)
        return false;
    setPosition(static_cast<std::size_t>(target));
    return true;
}

bool MemoryStream::setSize(std::int64_t newSize) {
    if (!writable_)
        throwNotOpenForWriting();
    if (newSize < 0 || newSize > kMaximumSize)
        throwInvalidSize();
    const std::int64_t oldPosition = position();
    bytes_.resize(static_cast<std::size_t>(newSize));
    setPosition(static_cast<std::size_t>(std::min(oldPosition, newSize)));
    return true;
}

std::uint8_t MemoryStream::at(std::int64_t index) const {
    if (index < 0 || index >= size())
        throwInvalidIndex();
    return bytes_[static_cast<std::size_t>(index)];
}

}  // namespace owlkit
