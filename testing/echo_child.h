// For tests of starting programs: the program of echo_child.cpp.
#pragma once

#include <filesystem>
#include <string>

namespace test {

inline std::u16string echoChild() {
    return std::filesystem::path(ECHO_CHILD).u16string();
}

// What its action "bytes" writes.
inline std::string echoChildLetters(std::size_t count) {
    std::string letters;
    for (std::size_t i = 0; i < count; ++i)
        letters += static_cast<char>('a' + i % 23);
    return letters;
}

}  // namespace test
