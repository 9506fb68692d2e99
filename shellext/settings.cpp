#include "shellext/settings.h"

#include <stdexcept>
#include <utility>

#include "shellext/identifiers.h"

namespace nmshell {
namespace {

using owlkit::RegistryKey;
using owlkit::RegistryMode;
using owlkit::RegistryRoot;
using owlkit::RegistryValueType;

constexpr const char16_t* kEnabled = u"Enabled";
constexpr const char16_t* kIcons = u"Icons";
constexpr const char16_t* kLanguage = u"Language";

// What `question` answers, or `fallback` when it throws.
template <class Answer, class Question>
Answer answerOr(Answer fallback, Question question) {
    try {
        return question();
    } catch (const std::exception&) {
        return fallback;
    }
}

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

bool ShellSettings::opens() {
    if (!std::exchange(tried_, true))
        key_.open(RegistryRoot::CurrentUser, std::u16string(kSettingsPath), RegistryMode::ReadOnly);
    return key_.state() != owlkit::KeyAccessState::Closed;
}

bool ShellSettings::holdsZero(const char16_t* name) {
    return answerOr(false, [&] {
        return opens() && key_.valueExists(name) && key_.valueType(name) == RegistryValueType::Dword &&
               key_.readDword(name) == 0;
    });
}

bool ShellSettings::isEnabled() {
    return IsApproved() && !holdsZero(kEnabled);
}

bool ShellSettings::showIcons() {
    return !holdsZero(kIcons);
}

std::u16string ShellSettings::language() {
    return answerOr(std::u16string(), [&] {
        const bool there =
            opens() && key_.valueExists(kLanguage) && key_.valueType(kLanguage) == RegistryValueType::String;
        return there ? key_.readString(kLanguage) : std::u16string();
    });
}

bool IsApproved() {
    return answerOr(false, [] {
        return RegistryKey::readRawStringOr(RegistryRoot::LocalMachine, std::u16string(kApprovalPath),
                                            std::u16string(kFileSystemClassId), {}) == kHandlerName;
    });
}

bool IsEnabled() {
    return ShellSettings().isEnabled();
}

bool ShowIcons() {
    return ShellSettings().showIcons();
}

std::u16string GetLanguageSetting() {
    return ShellSettings().language();
}

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
