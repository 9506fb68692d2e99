// The writers of the settings, apart from the readers: the module that the shell loads writes none.
#include "comserver/identifiers.h"
#include "comserver/settings.h"
#include "comserver/settings_internal.h"

namespace nmshell {
namespace {

using owlkit::RegistryKey;
using owlkit::RegistryRoot;

template <class Write>
bool writeIfApproved(Write write) {
    return IsApproved() && answerOr(false, write);
}

bool writeFlag(const char16_t* name, bool flag) {
    return writeIfApproved([&] {
        return RegistryKey::writeDword(RegistryRoot::CurrentUser, std::u16string(kSettingsPath), name,
                                       flag ? 1 : 0);
    });
}

}  // namespace

bool SetShowIcons(bool show) {
    return writeFlag(kIcons, show);
}

bool SetEnabled(bool enabled) {
    return writeFlag(kEnabled, enabled);
}

bool SetLanguageSetting(const std::u16string& language) {
    return writeIfApproved([&] {
        return RegistryKey::writeString(RegistryRoot::CurrentUser, std::u16string(kSettingsPath), kLanguage,
                                        language);
    });
}

}  // namespace nmshell
