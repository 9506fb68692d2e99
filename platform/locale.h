// The user's locale and the system's ANSI code page.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

inline constexpr std::uint32_t kUtf8CodePage = 65001;  // CP_UTF8

// The code page of CP_ACP by GetCPInfoExW; nothing when the call fails.
[[nodiscard]] std::optional<std::uint32_t> ansiCodePage();

// Kinds of locale information (LCTYPE).

// LOCALE_SABBREVLANGNAME, such as "ENU".
inline constexpr std::uint32_t kLocaleAbbreviatedLanguageName = 0x03;
inline constexpr std::uint32_t kLocaleListSeparator = 0x0C;       // LOCALE_SLIST
inline constexpr std::uint32_t kLocaleDecimalSeparator = 0x0E;    // LOCALE_SDECIMAL
inline constexpr std::uint32_t kLocaleThousandSeparator = 0x0F;   // LOCALE_STHOUSAND
inline constexpr std::uint32_t kLocaleShortDate = 0x1F;           // LOCALE_SSHORTDATE
inline constexpr std::uint32_t kLocaleLongDate = 0x20;            // LOCALE_SLONGDATE
inline constexpr std::uint32_t kLocaleIso639LanguageName = 0x59;  // LOCALE_SISO639LANGNAME, such as "en"
inline constexpr std::uint32_t kLocaleIso3166CountryName = 0x5A;  // LOCALE_SISO3166CTRYNAME, such as "US"
inline constexpr std::uint32_t kLocaleShortTime = 0x79;           // LOCALE_SSHORTTIME
inline constexpr std::uint32_t kLocaleLongTime = 0x1003;          // LOCALE_STIMEFORMAT

// GetLocaleInfoW for LOCALE_USER_DEFAULT, without the closing zero; empty on failure.
std::u16string localeInfo(std::uint32_t lcType);

// The flags below are those of the two calls under the same names.
inline constexpr std::uint32_t kMultiByteErrorInvalidCharacters = 0x08;  // MB_ERR_INVALID_CHARS
inline constexpr std::uint32_t kWideErrorInvalidCharacters = 0x80;       // WC_ERR_INVALID_CHARS
inline constexpr std::uint32_t kWideNoBestFitCharacters = 0x400;         // WC_NO_BEST_FIT_CHARS

// MultiByteToWideChar and WideCharToMultiByte with CP_ACP; empty text gives empty text without a call.
// Nothing when the call fails, as it does for text longer than 2147483647 units. `usedDefault`, when given,
// receives whether a character was replaced by the code page's default; with kUtf8CodePage it must be
// null, as the call itself demands.
[[nodiscard]] std::optional<std::u16string> multiByteToWide(std::string_view text, std::uint32_t flags);
[[nodiscard]] std::optional<std::string> wideToMultiByte(std::u16string_view text, std::uint32_t flags,
                                                         bool* usedDefault);

}  // namespace platform
