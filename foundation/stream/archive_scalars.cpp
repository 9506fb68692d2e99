// The scalar operations of the archive.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "foundation/stream/archive.h"

namespace owlkit {

template <class T>
std::size_t Archive::readScalar(T& value) {
    std::uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    const std::size_t got = read(bytes, sizeof(T));
    if (got == sizeof(T) && byteOrder() == ByteOrder::BigEndian)
        std::reverse(std::begin(bytes), std::end(bytes));
    std::memcpy(&value, bytes, sizeof(T));
    return got;
}

template <class T>
std::size_t Archive::writeScalar(T value) {
    std::uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    if (byteOrder() == ByteOrder::BigEndian)
        std::reverse(std::begin(bytes), std::end(bytes));
    return write(bytes, sizeof(T));
}

// Reads the form `Stored` into a type that may be wider than it.
template <class Stored, class T>
std::size_t Archive::readAs(T& value) {
    Stored stored = static_cast<Stored>(value);
    const std::size_t got = readScalar(stored);
    if (got != 0)
        value = stored;
    return got;
}

std::size_t Archive::readInt32(int& value) {
    return readScalar(value);
}
std::size_t Archive::readInt32(unsigned& value) {
    return readScalar(value);
}
std::size_t Archive::readInt32(long& value) {
    return readAs<std::int32_t>(value);
}
std::size_t Archive::readInt32(unsigned long& value) {
    return readAs<std::uint32_t>(value);
}
std::size_t Archive::readInt16(short& value) {
    return readScalar(value);
}
std::size_t Archive::readInt16(unsigned short& value) {
    return readScalar(value);
}
std::size_t Archive::readByte(bool& value) {
    std::uint8_t byte = 0;
    const std::size_t got = readScalar(byte);
    if (got != 0)
        value = byte != 0;
    return got;
}
std::size_t Archive::readByte(char& value) {
    return readScalar(value);
}
std::size_t Archive::readByte(unsigned char& value) {
    return readScalar(value);
}
std::size_t Archive::readUnit16(char16_t& value) {
    return readScalar(value);
}
std::size_t Archive::readUnit16(Code16& value) {
    return readScalar(value);
}
std::size_t Archive::readUnit32(char32_t& value) {
    return readScalar(value);
}
std::size_t Archive::readUnit32(Code32& value) {
    return readScalar(value);
}
std::size_t Archive::readInt64(long long& value) {
    return readScalar(value);
}
std::size_t Archive::readInt64(unsigned long long& value) {
    return readScalar(value);
}
std::size_t Archive::readFloating(double& value) {
    return readScalar(value);
}
std::size_t Archive::readFloating(long double& value) {
    return readAs<double>(value);
}
std::size_t Archive::readFloating(float& value) {
    return readScalar(value);
}

std::size_t Archive::writeInt32(const int& value) {
    return writeScalar(value);
}
std::size_t Archive::writeInt32(const unsigned& value) {
    return writeScalar(value);
}
std::size_t Archive::writeInt32(const long& value) {
    return writeScalar(static_cast<std::int32_t>(value));
}
std::size_t Archive::writeInt32(const unsigned long& value) {
    return writeScalar(static_cast<std::uint32_t>(value));
}
std::size_t Archive::writeInt16(const short& value) {
    return writeScalar(value);
}
std::size_t Archive::writeInt16(const unsigned short& value) {
    return writeScalar(value);
}
std::size_t Archive::writeByte(const unsigned char& value) {
    return writeScalar(value);
}
std::size_t Archive::writeValue8(std::uint8_t value) {
    return writeScalar(value);
}
std::size_t Archive::writeValue16(std::uint16_t value) {
    return writeScalar(value);
}
std::size_t Archive::writeValue32(std::uint32_t value) {
    return writeScalar(value);
}
std::size_t Archive::writeValue64(std::uint64_t value) {
    return writeScalar(value);
}
std::size_t Archive::writeInt64(const long long& value) {
    return writeScalar(value);
}
std::size_t Archive::writeFloating(const double& value) {
    return writeScalar(value);
}
std::size_t Archive::writeFloating(const float& value) {
    return writeScalar(value);
}

}  // namespace owlkit
