#include "tools/common/diagnosis.h"

#include <algorithm>

#include "comserver/identifiers.h"
#include "comserver/settings.h"
#include "foundation/path/path.h"
#include "foundation/registry/registry_key.h"
#include "foundation/text/text.h"
#include "lang/language_file_names.h"
#include "lang/language_loader.h"
#include "lang/loading_scope.h"
#include "platform/locale.h"
#include "tools/common/text.h"

namespace tools {
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
    if (owlkit::pathType(file) == owlkit::PathType::Unreadable)
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

// The language whose texts are those that the table gives.
std::u16string activeLanguage(const owlkit::interlang& table) {
    std::vector<std::u16string> languages;
    std::vector<std::u16string> keys;
    table.GetLanguages(languages);
    table.GetKeys(keys);
    const auto active = std::find_if(languages.begin(), languages.end(), [&](const std::u16string& language) {
        return std::all_of(keys.begin(), keys.end(), [&](const std::u16string& key) {
            return table.GetText(key) == table.GetText(key, language);
        });
    });
    return active == languages.end() ? std::u16string() : *active;
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

Languages inspectLanguages(const std::u16string& module) {
    Languages result;
    const std::u16string folder = owlkit::folderOf(module);
    if (folder.empty()) {
        result.failure = u"The folder of the module is not known.";
        return result;
    }
    result.folder = owlkit::withTrailingSeparator(folder + std::u16string(owlkit::kLanguageFolder));
    owlkit::interlang table;
    result.failure = owlkit::LoadLanguageFolder(result.folder, table);
    result.setting = owlkit::trim(nmshell::GetLanguageSetting());
    {
        const owlkit::LoadingScope loading(table);
        table.SetLanguages(result.setting, u"");  // as each request for a menu does
    }
    std::vector<std::u16string> languages;
    result.count = table.GetLanguages(languages);
    result.settingKnown = result.setting.empty() || table.HasLanguage(result.setting);
    result.regional = platform::localeInfo(platform::kLocaleIso639LanguageName);
    result.shown = activeLanguage(table);
    result.shownName = table.GetText(owlkit::kLanguageNameKey);
    return result;
}

std::string whyNoTexts(const Languages& languages) {
    return utf8(owlkit::replaceAll(languages.failure, u"\n", u" "));
}

}  // namespace tools
