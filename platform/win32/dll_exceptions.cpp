// The standard exceptions as nmshell.dll has them: the types and texts of the library, and none of the two
// string classes, 50 KB, that it keeps a text with. What the library throws itself is thrown from here too.
// Being linked first, this keeps the library's own out; a member that is missing here brings it back and ends
// the linking with double definitions. No exception is ever copied.
#include <cstdarg>
#include <cstring>
#include <new>
#include <stdexcept>

namespace __gnu_cxx {
int __snprintf_lite(char* text, std::size_t size, const char* format, va_list arguments);
}

namespace std {

__cow_string::__cow_string(const char* text, size_t size)
    : _M_p(static_cast<char*>(memcpy(new char[size], text, size))) {}
__cow_string::~__cow_string() {
    delete[] _M_p;
}

logic_error::logic_error(const char* text) : _M_msg(text, strlen(text) + 1) {}
logic_error::~logic_error() = default;
const char* logic_error::what() const noexcept {
    return _M_msg._M_p;
}

runtime_error::runtime_error(const char* text) : _M_msg(text, strlen(text) + 1) {}
runtime_error::~runtime_error() = default;
const char* runtime_error::what() const noexcept {
    return _M_msg._M_p;
}

invalid_argument::invalid_argument(const char* text) : logic_error(text) {}
invalid_argument::~invalid_argument() = default;
length_error::length_error(const char* text) : logic_error(text) {}
length_error::~length_error() = default;
out_of_range::out_of_range(const char* text) : logic_error(text) {}
out_of_range::~out_of_range() = default;
range_error::range_error(const char* text) : runtime_error(text) {}
range_error::~range_error() = default;

void __throw_bad_alloc() {
    throw bad_alloc();
}
void __throw_bad_array_new_length() {
    throw bad_array_new_length();
}
void __throw_logic_error(const char* text) {
    throw logic_error(text);
}
void __throw_length_error(const char* text) {
    throw length_error(text);
}
void __throw_out_of_range_fmt(const char* format, ...) {
    char text[1024];  // formats are the library's: at most a short word and two numbers
    va_list arguments;
    va_start(arguments, format);
    __gnu_cxx::__snprintf_lite(text, sizeof text, format, arguments);
    va_end(arguments);
    throw out_of_range(text);
}

}  // namespace std
