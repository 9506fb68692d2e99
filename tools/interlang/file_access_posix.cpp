#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "tools/interlang/file_access.h"
#include "tools/interlang/text.h"

namespace translators {

bool replaceFile(const std::u16string& path, const std::u16string& fresh) {
    const std::string name = utf8(path), freshName = utf8(fresh);
    struct stat status = {};
    // The owner first: changing it takes away the bits that run a program as its owner.
    return ::stat(name.c_str(), &status) == 0 &&
           ::chown(freshName.c_str(), status.st_uid, status.st_gid) == 0 &&
           ::chmod(freshName.c_str(), status.st_mode & 07777) == 0 &&
           std::rename(freshName.c_str(), name.c_str()) == 0;
}

}  // namespace translators
