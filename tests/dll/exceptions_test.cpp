// The exceptions that nmshell.dll brings itself (platform/win32/dll_exceptions.cpp) have the types and texts
// of the library's. Without GoogleTest, which needs the library's own: exit code 1 after naming what differs.
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include "foundation/errors.h"

namespace {

int failures = 0;

template <class Type>
void expectThrown(void (*work)(), const char* text) {
    const char* found = "nothing";
    try {
        work();
    } catch (const std::exception& error) {
        if (typeid(error) == typeid(Type) && std::strcmp(error.what(), text) == 0)
            return;
        std::printf("%s: %s\n", typeid(error).name(), error.what());
        found = "another one";
    }
    std::printf("wanted: %s, thrown: %s\n", text, found);
    ++failures;
}

}  // namespace

int main() {
    expectThrown<std::logic_error>(owlkit::throwInvalidState, "invalid state");
    expectThrown<std::invalid_argument>(owlkit::throwInvalidRadix, "invalid radix");
    expectThrown<std::length_error>(owlkit::throwSizeError, "size error");
    expectThrown<std::out_of_range>(owlkit::throwInvalidIndex, "invalid index");
    expectThrown<std::range_error>(owlkit::throwRangeError, "range error");
    expectThrown<std::runtime_error>([] { owlkit::throwNotFound(std::string("no such thing").c_str()); },
                                     "no such thing");
    expectThrown<std::out_of_range>([] { std::u16string(u"abc").substr(7); },
                                    "basic_string::substr: __pos (which is 7) > this->size() (which is 3)");
    expectThrown<std::length_error>([] { std::vector<char>().reserve(~std::size_t{0}); }, "vector::reserve");
    expectThrown<std::bad_alloc>([] { std::u16string(std::size_t{1} << 60, u'x'); }, "std::bad_alloc");
    return failures == 0 ? 0 : 1;
}
