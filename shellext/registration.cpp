#include "shellext/registration.h"

#include <stdexcept>
#include <string>
#include <string_view>

#include "foundation/process/folders.h"
#include "foundation/registry/registry_key.h"
#include "shellext/identifiers.h"

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

struct Handler {
    std::u16string_view path;
    std::u16string_view classId;
};
constexpr Handler kHandlers[] = {{kFileSystemHandlers, kFileSystemClassId},
                                 {kDriveHandlers, kDriveClassId},
                                 {kRecycleBinHandlers, kRecycleBinClassId}};

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

// All three approvals or none: a value written before the failing one is taken back here.
bool approveClasses() {
    RegistryKey key;
    if (!openApprovals(key))
        return false;
    for (std::size_t written = 0; written < std::size(kClassIds); ++written) {
        const bool done = succeeds([&] {
            key.writeString(std::u16string(kClassIds[written]), std::u16string(kHandlerName));
            return true;
        });
        if (done)
            continue;
        for (std::size_t i = 0; i < written; ++i)
            deleteApproval(key, kClassIds[i]);
        return false;
    }
    return true;
}

bool writeHandlersAndServers(const std::u16string& modulePath) {
    for (const Handler& handler : kHandlers)
        if (!RegistryKey::writeString(RegistryRoot::LocalMachine, join(handler.path, kHandlerName), u"",
                                      std::u16string(handler.classId)))
            return false;
    for (const std::u16string_view classId : kClassIds) {
        RegistryKey key;
        if (!key.create(RegistryRoot::LocalMachine, join(kClassPath, classId, kServerKey)))
            return false;
        key.writeString(u"", modulePath);
        key.writeString(u"ThreadingModel", u"Apartment");
    }
    return true;
}

}  // namespace

bool RegisterExtension() {
    std::u16string modulePath;
    const bool located = succeeds([&] {
        if (!owlkit::getFolder(owlkit::kFolderApplication, modulePath))
            return false;
        modulePath += kModuleName;
        return true;
    });
    if (!located || !approveClasses())
        return false;
    if (succeeds([&] { return writeHandlersAndServers(modulePath); }))
        return true;
    UnregisterExtension();
    return false;
}

void UnregisterExtension() {
    for (const Handler& handler : kHandlers)
        deleteKey(RegistryRoot::LocalMachine, handler.path, kHandlerName);
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
