#include "testing/temporary.h"

#include <fstream>
#include <random>
#include <sstream>
#include <system_error>

namespace test {
namespace {

namespace fs = std::filesystem;

void writeFile(const fs::path& path, std::string_view content) {
    std::ofstream(path, std::ios::binary) << content;
}

}  // namespace

std::string fileBytes(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

std::string uniqueDigits() {
    return std::to_string(10'000'000 + std::random_device{}() % 90'000'000);
}

TemporaryFolder::TemporaryFolder()
    : path_(fs::canonical(fs::temp_directory_path()) / ("nmshell test-" + uniqueDigits())) {
    fs::create_directory(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::permissions(path_, fs::perms::owner_all, ignored);
    fs::remove_all(path_, ignored);
}

void TemporaryFolder::write(const fs::path& name, std::string_view content) const {
    writeFile(path_ / name, content);
}

TemporaryFile::TemporaryFile()
    : path_(fs::temp_directory_path() / (u"nmshell \u00E9\u4E2D " + fs::path(uniqueDigits()).u16string())) {}

TemporaryFile::TemporaryFile(std::string_view content) : TemporaryFile() {
    writeFile(path_, content);
}

TemporaryFile::~TemporaryFile() {
    std::error_code ignored;
    fs::remove(path_, ignored);
}

}  // namespace test
