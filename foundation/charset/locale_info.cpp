#include "foundation/charset/locale_info.h"

#include <iterator>
#include <utility>

#include "foundation/charset/convert.h"
#include "foundation/errors.h"
#include "platform/locale.h"

namespace owlkit {
namespace {

// In the order of LocaleText.
constexpr std::uint32_t kLocaleTypes[] = {
    platform::kLocaleIso639LanguageName, platform::kLocaleIso3166CountryName,
    platform::kLocaleDecimalSeparator,   platform::kLocaleThousandSeparator,
    platform::kLocaleListSeparator,      platform::kLocaleShortDate,
    platform::kLocaleLongDate,           platform::kLocaleShortTime,
    platform::kLocaleLongTime,
};

}  // namespace

LocaleInfo::LocaleInfo() : charset_(systemCharset()) {
    static_assert(std::size(kLocaleTypes) == kTexts);
    for (std::size_t i = 0; i < kTexts; ++i)
        wide_[i] = platform::localeInfo(kLocaleTypes[i]);
    convertAll(charset_);
}

void LocaleInfo::SetCharset(CharsetCode charset) {
    if (charset == kCharsetSystem)
        charset = systemCharset();
    if (charset < kCharsetUtf8 || charset >= kCharsetCount)
        throwInvalidCharset();
    if (charset != charset_)
        convertAll(charset);
}

void LocaleInfo::convertAll(CharsetCode charset) {
    std::array<std::string, kTexts> narrow;
    for (std::size_t i = 0; i < kTexts; ++i)
        narrow[i] = ToNarrow(wide_[i], charset);
    narrow_ = std::move(narrow);
    charset_ = charset;
}

}  // namespace owlkit
