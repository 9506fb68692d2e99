// For tests: the child program and a folder to work in.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace owlkit {

// The path of the program of echo_child.cpp.
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

// An empty folder with a blank in its name, removed at the end.
class TestFolder {
  public:
    TestFolder() {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TestFolder() { std::filesystem::remove_all(path_); }

    std::filesystem::path path() const { return path_; }
    std::filesystem::path operator/(const char* name) const { return path_ / name; }

  private:
    // Tests of this program run side by side, each in a process of its own.
    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() /
        (std::string("process test ") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

}  // namespace owlkit
