// The user's settings, under HKEY_CURRENT_USER\Software\NMark Shell, and the approval without which the
// extension stays off. No function here throws: a setting that is missing, of another type or
// unreadable has its default, and a writer that fails answers false.
#pragma once

#include <optional>
#include <string>

#include "foundation/registry/registry_key.h"

namespace nmshell {

// The settings as one step reads them. The settings key is opened on the first question that needs it,
// read-only, and not again, whether that succeeded or not; the values are read anew at each question.
class ShellSettings {
  public:
    // False when not approved; else false only for an "Enabled" that is the 32-bit number 0.
    bool isEnabled();
    // False only for an "Icons" that is the 32-bit number 0. Does not ask for the approval.
    bool showIcons();
    // The text "Language" (REG_SZ); empty by default.
    std::u16string language();

  private:
    bool opens();
    std::optional<owlkit::StoredValue> tryRead(const char16_t* name, void* buffer, std::uint32_t capacity);
    bool holdsZero(const char16_t* name);

    owlkit::RegistryKey key_;
    bool tried_ = false;
};

// Whether the approval list of HKEY_LOCAL_MACHINE names the file-system class with exactly our handler's
// name.
bool IsApproved();

// One answer of a ShellSettings of its own.
bool IsEnabled();
bool ShowIcons();
std::u16string GetLanguageSetting();

// Write the setting, making the key if needed, and answer whether that succeeded; false, with nothing
// written, when the extension is not approved. Flags are stored as the 32-bit numbers 1 and 0.
[[nodiscard]] bool SetShowIcons(bool show);
[[nodiscard]] bool SetEnabled(bool enabled);
[[nodiscard]] bool SetLanguageSetting(const std::u16string& language);

}  // namespace nmshell
