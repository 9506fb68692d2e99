// The texts of the user's locale, wide as the platform gives them and narrow in a charset of choice: promised
// surface, which the extension itself does not call.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/charset/charset.h"

namespace owlkit {

enum class LocaleText : std::uint8_t {
    LanguageCode,       // ISO 639, such as "en"
    CountryCode,        // ISO 3166, such as "US"
    DecimalSeparator,   // between the whole part of a number and its fraction
    ThousandSeparator,  // between groups of digits
    ListSeparator,      // between the items of a list
    ShortDateFormat,    // such as "M/d/yyyy"
    LongDateFormat,     // such as "dddd, MMMM d, yyyy"
    ShortTimeFormat,    // such as "h:mm tt"
    LongTimeFormat,     // such as "h:mm:ss tt"
};

// Invariant: every narrow text is its wide counterpart converted to charset(), with "?" for what that cannot
// represent.
class LocaleInfo {
  public:
    // Reads every text of the user's locale by GetLocaleInfoW (empty where that fails) and converts to the
    // system charset.
    LocaleInfo();

    // kCharsetSystem stands for the system charset. Throws "invalid charset" and changes nothing when the
    // code is not one of kCharsetUtf8 to kCharsetCount - 1; so too for kCharsetSystem when the system's code
    // page has no charset.
    void SetCharset(CharsetCode charset);

    // kCharsetSystem until SetCharset is called on a system whose code page has no charset; then the narrow
    // texts are in that code page, by the platform's own conversion.
    CharsetCode charset() const { return charset_; }

    const std::u16string& wide(LocaleText text) const { return wide_[index(text)]; }
    const std::string& narrow(LocaleText text) const { return narrow_[index(text)]; }

  private:
    static constexpr std::size_t kTexts = static_cast<std::size_t>(LocaleText::LongTimeFormat) + 1;
    static constexpr std::size_t index(LocaleText text) { return static_cast<std::size_t>(text); }

    void convertAll(CharsetCode charset);

    CharsetCode charset_;
    std::array<std::u16string, kTexts> wide_;
    std::array<std::string, kTexts> narrow_;
};

}  // namespace owlkit
