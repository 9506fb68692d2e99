#include "shellext/registration.h"

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "comserver/identifiers.h"
#include "foundation/process/folders.h"
#include "foundation/registry/registry_key.h"

namespace nmshell {
namespace {

using owlkit::RegistryKey;
using owlkit::RegistryMode;
using owlkit::RegistryRoot;

constexpr std::u16string_view kModuleName = u"nmshell.dll";

// Paths under HKEY_LOCAL_MACHINE, each completed by a class identifier or by the handler's name.
constexpr std::u16string_view kClassPath = u"Software\\Classes\\CLSID\\";
constexpr std::u16string_view kServerKey = u"\\InProcServer32";
constexpr std::u16string_view kFileSystemHandlers =
    u"Software\\Classes\\AllFileSystemObjects\\ShellEx\\ContextMenuHandlers\\";
constexpr std::u16string_view kDriveHandlers = u"Software\\Classes\\Drive\\ShellEx\\ContextMenuHandlers\\";
constexpr std::u16string_view kRecycleBinHandlers =
    u"Software\\Classes\\CLSID\\{645FF040-5081-101B-9F08-00AA002F954E}\\ShellEx\\ContextMenuHandlers\\";

// In the order of kClassIds.
constexpr std::u16string_view kHandlerPaths[] = {kFileSystemHandlers, kDriveHandlers, kRecycleBinHandlers};

std::u16string join(std::u16string_view first, std::u16string_view second, std::u16string_view third = {}) {
    std::u16string text(first);
    text += second;
    text += third;
    return text;
}

// Whether `step` answered true without throwing.
template <class Step>
bool succeeds(Step step) noexcept {
    try {
        return step();
    } catch (const std::exception&) {
        return false;
    }
}

bool deleteApproval(RegistryKey& key, std::u16string_view classId) noexcept {
    return succeeds([&] { return key.deleteValue(std::u16string(classId)); });
}

bool deleteKey(RegistryRoot root, std::u16string_view first, std::u16string_view second = {},
               std::u16string_view third = {}) noexcept {
    return succeeds([&] { return RegistryKey().deleteKey(root, join(first, second, third)); });
}

bool openApprovals(RegistryKey& key) noexcept {
    return succeeds([&] {
        return key.open(RegistryRoot::LocalMachine, std::u16string(kApprovalPath), RegistryMode::ReadWrite);
    });
}

bool writeApproval(RegistryKey& key, std::u16string_view classId, const std::u16string& text) noexcept {
    return succeeds([&] {
        key.writeString(std::u16string(classId), text);
        return true;
    });
}

// What stood in the place of an approval.
struct Former {
    bool there = false;
    std::optional<std::u16string> text;  // nothing when it was no text
};
using Formers = std::array<Former, std::size(kClassIds)>;

Formers readFormers(const RegistryKey& key) {
    Formers formers;
    for (std::size_t i = 0; i < formers.size(); ++i) {
        const std::u16string name(kClassIds[i]);
        formers[i].there = key.valueExists(name);
        if (formers[i].there && key.valueType(name) == owlkit::RegistryValueType::String)
            formers[i].text = key.readString(name);
    }
    return formers;
}

// A value that was no text cannot be put back as it was; without it the class is as little approved.
bool putBack(RegistryKey& key, std::u16string_view classId, const Former& former) noexcept {
    if (former.text)
        return *former.text == kHandlerName || writeApproval(key, classId, *former.text);
    return deleteApproval(key, classId) && !former.there;
}

// All three approvals, or those that were there before.
RegistrationResult approveClasses() {
    RegistryKey key;
    Formers formers;
    const auto read = [&] {
        formers = readFormers(key);
        return true;
    };
    if (!openApprovals(key) || !succeeds(read))
        return RegistrationResult::NothingChanged;
    const std::u16string approval(kHandlerName);
    for (std::size_t written = 0; written < formers.size(); ++written) {
        if (writeApproval(key, kClassIds[written], approval))
            continue;
        bool whole = true;
        for (std::size_t i = 0; i < written; ++i)
            whole = putBack(key, kClassIds[i], formers[i]) && whole;
        return whole ? RegistrationResult::NothingChanged : RegistrationResult::Incomplete;
    }
    return RegistrationResult::Registered;
}

// Everything but the approvals. Entries of one key follow each other, and the key is made once.
bool writeHandlersAndServers(const std::u16string& modulePath) {
    RegistryKey key;
    for (const RegistrationEntry& entry : registrationEntries(modulePath)) {
        if (entry.path == kApprovalPath)
            continue;
        if (key.path() != entry.path && !key.create(RegistryRoot::LocalMachine, entry.path))
            return false;
        key.writeString(entry.name, entry.text);
    }
    return true;
}

}  // namespace

bool RegistrationEntry::isServer() const {
    return name.empty() && std::u16string_view(path).ends_with(kServerKey);
}

std::vector<RegistrationEntry> registrationEntries(const std::u16string& modulePath) {
    std::vector<RegistrationEntry> entries;
    for (const std::u16string_view classId : kClassIds)
        entries.push_back(
            {std::u16string(kApprovalPath), std::u16string(classId), std::u16string(kHandlerName)});
    for (std::size_t i = 0; i < std::size(kClassIds); ++i)
        entries.push_back({join(kHandlerPaths[i], kHandlerName), {}, std::u16string(kClassIds[i])});
    for (const std::u16string_view classId : kClassIds) {
        const std::u16string server = join(kClassPath, classId, kServerKey);
        entries.push_back({server, {}, modulePath});
        entries.push_back({server, u"ThreadingModel", u"Apartment"});
    }
    return entries;
}

RegistrationResult tryRegisterExtension() {
    std::u16string modulePath;
    const bool located = succeeds([&] {
        if (!owlkit::getFolder(owlkit::FolderCode::Application, modulePath))
            return false;
        modulePath += kModuleName;
        return true;
    });
    if (!located)
        return RegistrationResult::NothingChanged;
    auto approved = RegistrationResult::NothingChanged;
    succeeds([&] {
        approved = approveClasses();
        return true;
    });
    if (approved != RegistrationResult::Registered ||
        succeeds([&] { return writeHandlersAndServers(modulePath); }))
        return approved;
    UnregisterExtension();
    return RegistrationResult::Removed;
}

bool RegisterExtension() {
    return tryRegisterExtension() == RegistrationResult::Registered;
}

void UnregisterExtension() {
    for (const std::u16string_view path : kHandlerPaths)
        deleteKey(RegistryRoot::LocalMachine, path, kHandlerName);
    RegistryKey approvals;
    if (openApprovals(approvals))
        for (const std::u16string_view classId : kClassIds)
            deleteApproval(approvals, classId);
    for (const std::u16string_view classId : kClassIds) {
        deleteKey(RegistryRoot::LocalMachine, kClassPath, classId, kServerKey);
        deleteKey(RegistryRoot::LocalMachine, kClassPath, classId);
    }
    deleteKey(RegistryRoot::CurrentUser, kSettingsPath);
}

}  // namespace nmshell
