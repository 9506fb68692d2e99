#include "platform/security.h"

#include <aclapi.h>
#include <sddl.h>

#include <memory>

#include "platform/file.h"
#include "platform/process.h"
#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kRightAddFile == FILE_ADD_FILE);
static_assert(kRightAddFolder == FILE_ADD_SUBDIRECTORY);
static_assert(kRightDeleteChild == FILE_DELETE_CHILD);
static_assert(kRightDelete == DELETE);
static_assert(kRightChangeAccess == WRITE_DAC);
static_assert(kRightChangeOwner == WRITE_OWNER);
static_assert(kRightGenericAll == GENERIC_ALL);
static_assert(kRightGenericWrite == GENERIC_WRITE);

namespace {

struct LocalFreer {
    void operator()(void* block) const noexcept { LocalFree(block); }
};
using LocalBlock = std::unique_ptr<void, LocalFreer>;

std::u16string text(PSID account) {
    wchar_t* identifier = nullptr;
    if (!ConvertSidToStringSidW(account, &identifier))
        return {};
    const LocalBlock owned(identifier);
    return reinterpret_cast<const char16_t*>(identifier);
}

void addEntry(const ACE_HEADER& header, AccessList& list) {
    // An entry with a condition has the same layout; the condition counts as met.
    if (header.AceType != ACCESS_ALLOWED_ACE_TYPE && header.AceType != ACCESS_ALLOWED_CALLBACK_ACE_TYPE)
        return;
    const auto& entry = reinterpret_cast<const ACCESS_ALLOWED_ACE&>(header);
    list.allowed.push_back(
        {text(const_cast<DWORD*>(&entry.SidStart)), entry.Mask, (header.AceFlags & INHERIT_ONLY_ACE) != 0});
}

}  // namespace

Status accessList(const std::u16string& path, AccessList& list) {
    PSID owner = nullptr;
    PACL acl = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = GetNamedSecurityInfoW(wide(path), SE_FILE_OBJECT,
                                              OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
                                              nullptr, &acl, nullptr, &descriptor);
    if (error != ERROR_SUCCESS)
        return Status{error};
    const LocalBlock owned(descriptor);
    list.owner = text(owner);
    list.allowed.clear();
    if (!acl)
        list.allowed.push_back({u"S-1-1-0", kRightGenericAll, false});
    for (DWORD index = 0; acl && index < acl->AceCount; ++index) {
        void* entry = nullptr;
        if (!GetAce(acl, index, &entry))
            return lastError();
        addEntry(*static_cast<const ACE_HEADER*>(entry), list);
    }
    return kSuccess;
}

std::u16string processAccount() {
    const TokenHandle token = openProcessToken(kTokenQuery);
    alignas(TOKEN_USER) std::byte buffer[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD length = 0;
    if (!GetTokenInformation(token.get(), TokenUser, buffer, sizeof buffer, &length))
        return {};
    return text(reinterpret_cast<const TOKEN_USER*>(buffer)->User.Sid);
}

std::u16string accountName(const std::u16string& account) {
    PSID identifier = nullptr;
    if (!ConvertStringSidToSidW(wide(account), &identifier))
        return account;
    const LocalBlock owned(identifier);
    wchar_t name[256];
    wchar_t domain[256];
    DWORD nameLength = std::size(name);
    DWORD domainLength = std::size(domain);
    SID_NAME_USE use{};
    if (!LookupAccountSidW(nullptr, identifier, name, &nameLength, domain, &domainLength, &use))
        return account;
    std::u16string result(reinterpret_cast<const char16_t*>(domain), domainLength);
    result += result.empty() ? u"" : u"\\";
    return result.append(reinterpret_cast<const char16_t*>(name), nameLength);
}

std::u16string finalPath(const std::u16string& path) {
    // No access is asked for: reading the name needs none. The flag is what folders are opened with.
    const HANDLE opened = CreateFileW(wide(path), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return {};
    const FileHandle file(opened);
    std::u16string name(32768, u'\0');
    const DWORD length =
        GetFinalPathNameByHandleW(opened, wide(name.data()), static_cast<DWORD>(name.size()), 0);
    name.resize(length < name.size() ? length : 0);
    constexpr std::u16string_view kShare = u"\\\\?\\UNC\\";
    constexpr std::u16string_view kPrefix = u"\\\\?\\";
    if (name.starts_with(kShare))
        return u"\\\\" + name.substr(kShare.size());
    return name.starts_with(kPrefix) ? name.substr(kPrefix.size()) : name;
}

}  // namespace platform
