#include "platform/security.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "platform/host/fault.h"
#include "platform/host/utf8.h"

namespace platform {
namespace {

constexpr std::uint32_t kWrite = kRightAddFile | kRightAddFolder | kRightDeleteChild | kRightDelete;

std::u16string accountOf(uid_t user) {
    const std::string number = std::to_string(user);
    return u"S-1-22-1-" + std::u16string(number.begin(), number.end());
}

// The account's text, empty when it cannot be made.
std::u16string asText(std::u16string account) {
    return fault::next("ConvertSidToStringSidW") == kSuccess ? std::move(account) : std::u16string();
}

Status addEntry(AccessList& list, std::u16string account, std::uint32_t rights) {
    if (const Status injected = fault::next("GetAce"); injected != kSuccess)
        return injected;
    list.allowed.push_back({asText(std::move(account)), rights, false});
    return kSuccess;
}

}  // namespace

Status accessList(const std::u16string& path, AccessList& list) {
    if (const Status injected = fault::next("GetNamedSecurityInfoW"); injected != kSuccess)
        return injected;
    struct stat status {};
    if (stat(toHostName(path).c_str(), &status) != 0)
        return errno == ENOENT ? kErrorFileNotFound : kErrorAccessDenied;
    list.owner = asText(accountOf(status.st_uid));
    list.allowed.clear();
    const Status added = addEntry(list, accountOf(status.st_uid), kRightGenericAll);
    return added == kSuccess && (status.st_mode & S_IWOTH) ? addEntry(list, u"S-1-1-0", kWrite) : added;
}

std::u16string processAccount() {
    if (fault::next("OpenProcessToken") != kSuccess || fault::next("GetTokenInformation") != kSuccess)
        return {};
    return asText(accountOf(getuid()));
}

std::u16string accountName(const std::u16string& account) {
    const bool looked =
        fault::next("ConvertStringSidToSidW") == kSuccess && fault::next("LookupAccountSidW") == kSuccess;
    return looked && account == u"S-1-1-0" ? u"Everyone" : account;
}

std::u16string finalPath(const std::u16string& path) {
    if (fault::next("CreateFileW") != kSuccess)
        return {};
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(toHostName(path), error);
    if (error || fault::next("GetFinalPathNameByHandleW") != kSuccess)
        return {};
    return fromHostName(real.native());
}

}  // namespace platform
