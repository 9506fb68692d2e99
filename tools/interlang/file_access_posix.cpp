#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "tools/interlang/file_access.h"
#include "tools/interlang/text.h"

namespace translators {
namespace {

namespace fs = std::filesystem;

constexpr int kLinkLimit = 40;
constexpr std::size_t kLimit = 65536;  // of Linux, for the list of names and for a value

// Access lists are among them.
bool copyAttributes(const std::string& from, const std::string& to) {
    std::string names(kLimit, '\0'), value(kLimit, '\0');
    const ssize_t length = ::listxattr(from.c_str(), names.data(), names.size());
    if (length < 0)
        return errno == ENOTSUP;
    for (const char* name = names.data(); name < names.data() + length; name += std::strlen(name) + 1) {
        const ssize_t size = ::getxattr(from.c_str(), name, value.data(), value.size());
        if (size < 0 || ::setxattr(to.c_str(), name, value.data(), static_cast<std::size_t>(size), 0) != 0)
            return false;
    }
    return true;
}

}  // namespace

std::u16string withoutLinks(const std::u16string& path) {
    std::error_code error;
    fs::path target(path);
    for (int i = 0; i < kLinkLimit && fs::is_symlink(target, error); ++i)
        target = target.parent_path() / fs::read_symlink(target, error);
    return target.u16string();
}

bool replaceFile(const std::u16string& path, const std::u16string& fresh) {
    const std::string name = utf8(path), freshName = utf8(fresh);
    struct stat status = {};
    // The owner first: changing it takes away the bits that run a program as its owner.
    return ::stat(name.c_str(), &status) == 0 &&
           ::chown(freshName.c_str(), status.st_uid, status.st_gid) == 0 && copyAttributes(name, freshName) &&
           ::chmod(freshName.c_str(), status.st_mode & 07777) == 0 &&
           std::rename(freshName.c_str(), name.c_str()) == 0;
}

}  // namespace translators
