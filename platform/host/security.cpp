#include "platform/security.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/host/fault.h"
#include "platform/host/utf8.h"

namespace platform {
namespace {

constexpr std::uint32_t kWrite = kRightAddFile | kRightAddFolder | kRightDeleteChild | kRightDelete;

std::u16string accountOf(uid_t user) {
    const std::string number = std::to_string(user);
    return u"S-1-22-1-" + std::u16string(number.begin(), number.end());
}

}  // namespace

Status accessList(const std::u16string& path, AccessList& list) {
    if (const Status injected = fault::next("GetNamedSecurityInfoW"); injected != kSuccess)
        return injected;
    struct stat status {};
    if (stat(toHostName(path).c_str(), &status) != 0)
        return errno == ENOENT ? kErrorFileNotFound : kErrorAccessDenied;
    list.owner = accountOf(status.st_uid);
    list.allowed = {{list.owner, kRightGenericAll, false}};
    if (status.st_mode & S_IWOTH)
        list.allowed.push_back({u"S-1-1-0", kWrite, false});
    return kSuccess;
}

std::u16string processAccount() {
    return fault::next("GetTokenInformation") == kSuccess ? accountOf(getuid()) : std::u16string();
}

std::u16string accountName(const std::u16string& account) {
    return account == u"S-1-1-0" ? u"Everyone" : account;
}

std::u16string finalPath(const std::u16string& path) {
    if (fault::next("GetFinalPathNameByHandleW") != kSuccess)
        return {};
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(toHostName(path), error);
    return error ? std::u16string() : fromHostName(real.native());
}

}  // namespace platform
