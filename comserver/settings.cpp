#include "comserver/settings.h"

#include <utility>

#include "comserver/identifiers.h"
#include "comserver/settings_internal.h"

namespace nmshell {
namespace {

using owlkit::RegistryKey;
using owlkit::RegistryMode;
using owlkit::RegistryRoot;
using owlkit::RegistryValueType;
using owlkit::StoredValue;

constexpr std::size_t kUsualLanguage = 7;  // characters, NUL included; a longer one is asked for twice

bool isText(RegistryValueType type) {
    return type == RegistryValueType::String || type == RegistryValueType::ExpandableString ||
           type == RegistryValueType::MultiString;
}

}  // namespace

bool ShellSettings::opens() {
    if (!std::exchange(tried_, true))
        static_cast<void>(
            key_.open(RegistryRoot::CurrentUser, std::u16string(kSettingsPath), RegistryMode::ReadOnly));
    return key_.state() != owlkit::KeyAccessState::Closed;
}

std::optional<StoredValue> ShellSettings::tryRead(const char16_t* name, void* buffer,
                                                  std::uint32_t capacity) {
    return opens() ? key_.tryRead(name, buffer, capacity) : std::nullopt;
}

bool ShellSettings::holdsZero(const char16_t* name) {
    return answerOr(false, [&] {
        std::uint32_t number = 0;
        const std::optional<StoredValue> value = tryRead(name, &number, sizeof number);
        return value && value->type == RegistryValueType::Dword && value->size == sizeof number &&
               number == 0;
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
        std::u16string text(kUsualLanguage, u'\0');
        const auto room = [&] { return static_cast<std::uint32_t>(text.size() * sizeof(char16_t)); };
        std::optional<StoredValue> value = tryRead(kLanguage, text.data(), room());
        if (value && value->size > room()) {
            text.resize(value->size / sizeof(char16_t) + 1);
            value = tryRead(kLanguage, text.data(), room());
        }
        const bool there = value && value->type == RegistryValueType::String && value->size <= room();
        text.resize(there ? owlkit::storedText(text.data(), value->size).size() : 0);
        return text;
    });
}

bool IsApproved() {
    return answerOr(false, [] {
        RegistryKey key;
        if (!key.open(RegistryRoot::LocalMachine, std::u16string(kApprovalPath), RegistryMode::ReadOnly))
            return false;
        // Room for the name, its NUL and an odd byte; what needs more is no approval.
        char16_t text[kHandlerName.size() + 2];
        const std::optional<StoredValue> value =
            key.tryRead(std::u16string(kFileSystemClassId), text, sizeof text);
        return value && isText(value->type) && value->size <= sizeof text &&
               owlkit::storedText(text, value->size) == kHandlerName;
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

}  // namespace nmshell
