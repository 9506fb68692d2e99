#include "tools/rightclick/diagnosis.h"

#include "foundation/registry/registry_key.h"
#include "platform/file.h"
#include "shellext/identifiers.h"
#include "shellext/settings.h"
#include "tools/rightclick/text.h"

namespace rightclick {
namespace {

using owlkit::RegistryKey;
using owlkit::RegistryMode;
using owlkit::RegistryRoot;

std::string whyNotRegistered(nmshell::SelectionKind kind) {
    std::u16string path = u"CLSID\\";
    path += nmshell::kClassIds[static_cast<std::size_t>(kind)];
    path += u"\\InProcServer32";
    // What is written below HKEY_LOCAL_MACHINE\Software\Classes shows in HKEY_CLASSES_ROOT, as do classes of
    // one user.
    if (!RegistryKey().exists(RegistryRoot::ClassesRoot, path))
        return "the extension is not registered: there is no key HKEY_LOCAL_MACHINE\\Software\\Classes\\" +
               utf8(path);
    const std::u16string file = RegistryKey::readRawStringOr(RegistryRoot::ClassesRoot, path, u"", {});
    if (platform::fileAttributes(file) == platform::kInvalidFileAttributes)
        return "the extension is not registered: HKEY_CLASSES_ROOT\\" + utf8(path) + " names no file: \"" +
               utf8(file) + "\"";
    return {};
}

std::string whyNotApproved() {
    const std::u16string path(nmshell::kApprovalPath);
    const std::u16string name(nmshell::kFileSystemClassId);
    const std::string place = "HKEY_LOCAL_MACHINE\\" + utf8(path) + ", value \"" + utf8(name) + "\"";
    RegistryKey key;
    if (!key.open(RegistryRoot::LocalMachine, path, RegistryMode::ReadOnly) || !key.valueExists(name))
        return "the extension is not approved: missing " + place;
    return "the extension is not approved: its name \"" + utf8(nmshell::kHandlerName) +
           "\" is not the text of " + place;
}

}  // namespace

std::string whyUnavailable(nmshell::SelectionKind kind, bool registered) {
    if (registered)
        if (std::string reason = whyNotRegistered(kind); !reason.empty())
            return reason;
    if (!nmshell::IsApproved())
        return whyNotApproved();
    if (!nmshell::IsEnabled())
        return "the extension is switched off: HKEY_CURRENT_USER\\" + utf8(nmshell::kSettingsPath) +
               ", value \"Enabled\" is 0";
    return {};
}

}  // namespace rightclick
