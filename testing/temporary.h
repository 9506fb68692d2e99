// Files and folders that go away by themselves, with names of their own: tests run side by side.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace test {

// The content of a file, byte for byte; empty when there is none.
std::string fileBytes(const std::filesystem::path& path);

// Eight digits, others each time.
std::string uniqueDigits();

// An empty folder with one blank in its name, which is there to be escaped.
class TemporaryFolder {
  public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }
    // With a separator at the end.
    std::u16string name() const { return (path_ / "").u16string(); }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
    void write(const std::filesystem::path& name, std::string_view content) const;

  private:
    const std::filesystem::path path_;
};

// A file name with characters outside every single-byte charset; a file only when content is given.
class TemporaryFile {
  public:
    TemporaryFile();
    explicit TemporaryFile(std::string_view content);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    std::u16string name() const { return path_.u16string(); }
    const std::filesystem::path& path() const { return path_; }
    std::string content() const { return fileBytes(path_); }

  private:
    const std::filesystem::path path_;
};

}  // namespace test
