#include "platform/locale.h"

#include <climits>
#include <map>
#include <utility>

#include "platform/host/fault.h"
#include "platform/host/locale_host.h"
#include "platform/host/utf8.h"

namespace platform {
namespace {

struct State {
    std::optional<std::uint32_t> codePage = kUtf8CodePage;
    std::map<std::uint32_t, std::u16string> texts = {
        {kLocaleAbbreviatedLanguageName, u"ENU"}, {kLocaleListSeparator, u","},
        {kLocaleDecimalSeparator, u"."},          {kLocaleThousandSeparator, u","},
        {kLocaleShortDate, u"M/d/yyyy"},          {kLocaleLongDate, u"dddd, MMMM d, yyyy"},
        {kLocaleIso639LanguageName, u"en"},       {kLocaleIso3166CountryName, u"US"},
        {kLocaleShortTime, u"h:mm tt"},           {kLocaleLongTime, u"h:mm:ss tt"},
    };
};

State& state() {
    static State instance;
    return instance;
}

constexpr std::uint32_t kGb18030CodePage = 54936;

bool isUtf8() {
    return state().codePage.value_or(kUtf8CodePage) == kUtf8CodePage;
}

bool isSurrogate(char16_t c) {
    return c >= 0xD800 && c < 0xE000;
}

// How many code units the character at `at` has; 0 for a lone surrogate.
std::size_t characterLength(std::u16string_view text, std::size_t at) {
    if (!isSurrogate(text[at]))
        return 1;
    const bool pair =
        text[at] < 0xDC00 && at + 1 < text.size() && isSurrogate(text[at + 1]) && text[at + 1] >= 0xDC00;
    return pair ? 2 : 0;
}

// Puts U+FFFD in the place of every lone surrogate; returns whether there was one.
bool replaceLoneSurrogates(std::u16string& text) {
    bool found = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterLength(text, at);
        if (length == 0) {
            text[at] = u'\uFFFD';
            found = true;
        }
        at += length == 0 ? 1 : length;
    }
    return found;
}

// The two substitutes for the code pages other than UTF-8; each returns whether every unit was defined.
bool substituteToWide(std::string_view text, std::u16string& result) {
    bool defined = true;
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        const bool known = byte < 0x80 || byte >= 0xA0;
        defined = defined && known;
        result += known ? static_cast<char16_t>(byte) : u'\uFFFD';
    }
    return defined;
}

bool substituteToNarrow(std::u16string_view text, std::string& result) {
    bool defined = true;
    for (const char16_t unit : text) {
        const bool known = unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF);
        defined = defined && known;
        result += known ? static_cast<char>(unit) : '?';
    }
    return defined;
}

}  // namespace

std::optional<std::uint32_t> ansiCodePage() {
    if (fault::next("GetCPInfoExW") != kSuccess)
        return std::nullopt;
    return state().codePage;
}

// From here on Windows takes two calls: one for the length of a text, one for the text.
std::u16string localeInfo(std::uint32_t lcType) {
    if (fault::next("GetLocaleInfoW") != kSuccess)
        return {};
    const auto found = state().texts.find(lcType);
    if (found == state().texts.end() || fault::next("GetLocaleInfoW") != kSuccess)
        return {};
    return found->second;
}

std::optional<std::u16string> multiByteToWide(std::string_view text, std::uint32_t flags) {
    if (text.empty())
        return std::u16string{};
    if (fault::next("MultiByteToWideChar") != kSuccess || text.size() > INT_MAX)
        return std::nullopt;
    std::u16string result;
    bool defined = true;
    if (isUtf8()) {
        result = fromHostName(text);
        defined = toHostName(result) == text;
        defined = !replaceLoneSurrogates(result) && defined;
    } else {
        defined = substituteToWide(text, result);
    }
    if (!defined && (flags & kMultiByteErrorInvalidCharacters) != 0)
        return std::nullopt;
    if (fault::next("MultiByteToWideChar") != kSuccess)
        return std::nullopt;
    return result;
}

std::optional<std::string> wideToMultiByte(std::u16string_view text, std::uint32_t flags, bool* usedDefault) {
    if (usedDefault != nullptr)
        *usedDefault = false;
    if (text.empty())
        return std::string{};
    if (fault::next("WideCharToMultiByte") != kSuccess || text.size() > INT_MAX)
        return std::nullopt;
    // As the call itself refuses: in these no question about the default character and no other flag.
    const bool isStrict = isUtf8() || state().codePage == kGb18030CodePage;
    if (isStrict && (usedDefault != nullptr || (flags & ~kWideErrorInvalidCharacters) != 0))
        return std::nullopt;
    if (!isUtf8()) {
        std::string result;
        const bool defined = substituteToNarrow(text, result);
        if (!defined && flags == kWideErrorInvalidCharacters)
            return std::nullopt;
        if (fault::next("WideCharToMultiByte") != kSuccess)
            return std::nullopt;
        if (usedDefault != nullptr)
            *usedDefault = !defined;
        return result;
    }
    std::u16string characters(text);
    if (replaceLoneSurrogates(characters) && flags != 0)
        return std::nullopt;
    if (fault::next("WideCharToMultiByte") != kSuccess)
        return std::nullopt;
    return toHostName(characters);
}

namespace host {

void setAnsiCodePage(std::optional<std::uint32_t> codePage) {
    state().codePage = codePage;
}

void setLocaleInfo(std::uint32_t lcType, std::u16string text) {
    state().texts[lcType] = std::move(text);
}

void resetLocale() {
    state() = State{};
}

}  // namespace host
}  // namespace platform
