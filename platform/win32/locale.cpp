#include "platform/locale.h"

#include <climits>

#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kUtf8CodePage == CP_UTF8);
static_assert(kMultiByteErrorInvalidCharacters == MB_ERR_INVALID_CHARS);
static_assert(kWideErrorInvalidCharacters == WC_ERR_INVALID_CHARS);
static_assert(kWideNoBestFitCharacters == WC_NO_BEST_FIT_CHARS);
static_assert(kLocaleAbbreviatedLanguageName == LOCALE_SABBREVLANGNAME);
static_assert(kLocaleListSeparator == LOCALE_SLIST);
static_assert(kLocaleDecimalSeparator == LOCALE_SDECIMAL);
static_assert(kLocaleThousandSeparator == LOCALE_STHOUSAND);
static_assert(kLocaleShortDate == LOCALE_SSHORTDATE);
static_assert(kLocaleLongDate == LOCALE_SLONGDATE);
static_assert(kLocaleIso639LanguageName == LOCALE_SISO639LANGNAME);
static_assert(kLocaleIso3166CountryName == LOCALE_SISO3166CTRYNAME);
static_assert(kLocaleShortTime == LOCALE_SSHORTTIME);
static_assert(kLocaleLongTime == LOCALE_STIMEFORMAT);

std::optional<std::uint32_t> ansiCodePage() {
    CPINFOEXW info = {};
    if (!GetCPInfoExW(CP_ACP, 0, &info))
        return std::nullopt;
    return info.CodePage;
}

std::u16string localeInfo(std::uint32_t lcType) {
    const int size = GetLocaleInfoW(LOCALE_USER_DEFAULT, lcType, nullptr, 0);
    if (size <= 0)
        return {};
    std::u16string text(static_cast<std::size_t>(size), u'\0');
    const int count = GetLocaleInfoW(LOCALE_USER_DEFAULT, lcType, wide(text.data()), size);
    // The count includes the closing zero.
    text.resize(count > 0 ? static_cast<std::size_t>(count) - 1 : 0);
    return text;
}

std::optional<std::u16string> multiByteToWide(std::string_view text, std::uint32_t flags) {
    if (text.empty())
        return std::u16string{};
    if (text.size() > INT_MAX)
        return std::nullopt;
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_ACP, flags, text.data(), length, nullptr, 0);
    if (size <= 0)
        return std::nullopt;
    std::u16string result(static_cast<std::size_t>(size), u'\0');
    if (MultiByteToWideChar(CP_ACP, flags, text.data(), length, wide(result.data()), size) != size)
        return std::nullopt;
    return result;
}

std::optional<std::string> wideToMultiByte(std::u16string_view text, std::uint32_t flags, bool* usedDefault) {
    if (usedDefault != nullptr)
        *usedDefault = false;
    if (text.empty())
        return std::string{};
    if (text.size() > INT_MAX)
        return std::nullopt;
    const int length = static_cast<int>(text.size());
    BOOL used = FALSE;
    BOOL* const question = usedDefault != nullptr ? &used : nullptr;
    const int size =
        WideCharToMultiByte(CP_ACP, flags, wide(text.data()), length, nullptr, 0, nullptr, question);
    if (size <= 0)
        return std::nullopt;
    std::string result(static_cast<std::size_t>(size), '\0');
    if (WideCharToMultiByte(CP_ACP, flags, wide(text.data()), length, result.data(), size, nullptr,
                            question) != size)
        return std::nullopt;
    if (usedDefault != nullptr)
        *usedDefault = used != FALSE;
    return result;
}

}  // namespace platform
