// What the locale stand-in answers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform::host {

// What ansiCodePage() answers and the two conversions use: 65001 (UTF-8) at first. Nothing makes GetCPInfoExW
// fail. Every code page but 65001 is a small substitute: the bytes 0x00 to 0x7F and 0xA0 to 0xFF are the
// characters of ISO-8859-1, the bytes 0x80 to 0x9F are undefined.
void setAnsiCodePage(std::optional<std::uint32_t> codePage);

// The text of one kind of locale information; at first those of "en" in "US".
void setLocaleInfo(std::uint32_t lcType, std::u16string text);

// Back to the values of the start.
void resetLocale();

}  // namespace platform::host
