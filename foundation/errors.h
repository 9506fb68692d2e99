// The library's errors: a standard exception category and one short fixed text each. All of them are thrown
// from here, so that a text is spelled in one place.
#pragma once

namespace owlkit {

// std::logic_error
[[noreturn]] void throwInvalidState();       // "invalid state"
[[noreturn]] void throwReadOnly();           // "read-only error"
[[noreturn]] void throwNotOpenForReading();  // "stream is not open for reading"
[[noreturn]] void throwNotOpenForWriting();  // "stream is not open for writing"
[[noreturn]] void throwFileNotWritable();    // "file is not open for writing"
[[noreturn]] void throwStreamClosed();       // "stream is closed"

// std::invalid_argument
[[noreturn]] void throwInvalidArgument();    // "invalid argument"
[[noreturn]] void throwInvalidPointer();     // "invalid pointer"
[[noreturn]] void throwInvalidRadix();       // "invalid radix"
[[noreturn]] void throwInvalidConversion();  // "invalid conversion"
[[noreturn]] void throwInvalidCharset();     // "invalid charset"

// std::length_error
[[noreturn]] void throwInvalidSize();    // "invalid size"
[[noreturn]] void throwSizeError();      // "size error"
[[noreturn]] void throwStringTooLong();  // "string too long"

// std::out_of_range
[[noreturn]] void throwInvalidIndex();  // "invalid index"

// std::range_error
[[noreturn]] void throwRangeError();  // "range error"

// std::runtime_error
[[noreturn]] void throwNotFound();                  // "not found"
[[noreturn]] void throwNotFound(const char* text);  // `text`, for a message that names what was not found
[[noreturn]] void throwInvalidType();               // "invalid type"
[[noreturn]] void throwFailed();                    // "failed"
[[noreturn]] void throwParseError();                // "parse error"
[[noreturn]] void throwReadStringTooLarge();        // "read string size too large"

}  // namespace owlkit
