#include "foundation/errors.h"

#include <stdexcept>

namespace owlkit {

void throwInvalidState() {
    throw std::logic_error("invalid state");
}
void throwReadOnly() {
    throw std::logic_error("read-only error");
}
void throwNotOpenForReading() {
    throw std::logic_error("stream is not open for reading");
}
void throwNotOpenForWriting() {
    throw std::logic_error("stream is not open for writing");
}
void throwFileNotWritable() {
    throw std::logic_error("file is not open for writing");
}
void throwStreamClosed() {
    throw std::logic_error("stream is closed");
}

void throwInvalidArgument() {
    throw std::invalid_argument("invalid argument");
}
void throwInvalidPointer() {
    throw std::invalid_argument("invalid pointer");
}
void throwInvalidRadix() {
    throw std::invalid_argument("invalid radix");
}
void throwInvalidConversion() {
    throw std::invalid_argument("invalid conversion");
}
void throwInvalidCharset() {
    throw std::invalid_argument("invalid charset");
}

void throwInvalidSize() {
    throw std::length_error("invalid size");
}
void throwSizeError() {
    throw std::length_error("size error");
}
void throwStringTooLong() {
    throw std::length_error("string too long");
}

void throwInvalidIndex() {
    throw std::out_of_range("invalid index");
}

void throwRangeError() {
    throw std::range_error("range error");
}

void throwNotFound() {
    throwNotFound("not found");
}
void throwNotFound(const char* text) {
    throw std::runtime_error(text);
}
void throwInvalidType() {
    throw std::runtime_error("invalid type");
}
void throwFailed() {
    throw std::runtime_error("failed");
}
void throwParseError() {
    throw std::runtime_error("parse error");
}
void throwReadStringTooLarge() {
    throw std::runtime_error("read string size too large");
}

}  // namespace owlkit
