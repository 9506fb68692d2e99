// The character sets of the library and their codes.
#pragma once

#include <cstdint>
#include <string_view>

namespace owlkit {

using CharsetCode = std::uint32_t;

inline constexpr CharsetCode kCharsetSystem = 0;  // of the system's ANSI code page, resolved at use
inline constexpr CharsetCode kCharsetUtf8 = 1;
inline constexpr CharsetCode kCharsetAscii = 2;
inline constexpr CharsetCode kCharsetLatin1 = 3;  // ISO-8859-1
inline constexpr CharsetCode kCharsetIso8859_2 = 4;
inline constexpr CharsetCode kCharsetIso8859_3 = 5;
inline constexpr CharsetCode kCharsetIso8859_4 = 6;
inline constexpr CharsetCode kCharsetIso8859_5 = 7;
inline constexpr CharsetCode kCharsetIso8859_6 = 8;
inline constexpr CharsetCode kCharsetIso8859_7 = 9;
inline constexpr CharsetCode kCharsetIso8859_8 = 10;
inline constexpr CharsetCode kCharsetIso8859_9 = 11;
inline constexpr CharsetCode kCharsetIso8859_15 = 12;
inline constexpr CharsetCode kCharsetIso8859_16 = 13;
inline constexpr CharsetCode kCharsetWindows1250 = 14;
inline constexpr CharsetCode kCharsetWindows1251 = 15;
inline constexpr CharsetCode kCharsetWindows1252 = 16;
inline constexpr CharsetCode kCharsetWindows1253 = 17;
inline constexpr CharsetCode kCharsetWindows1254 = 18;
inline constexpr CharsetCode kCharsetWindows1255 = 19;
inline constexpr CharsetCode kCharsetWindows1256 = 20;
inline constexpr CharsetCode kCharsetDos850 = 21;
inline constexpr CharsetCode kCharsetCount = kCharsetDos850 + 1;  // all codes are below it

// Not a charset of the table: has ToWide and ToNarrow use the platform's own conversion. It has no name.
inline constexpr CharsetCode kCharsetPlatform = 26846;

// The name, such as "UTF-8" or "WINDOWS-1252"; empty for kCharsetCount and above.
std::string_view CharsetName(CharsetCode code);

// The charset of a Windows code page; kCharsetSystem when the code page has none.
CharsetCode CharsetFromCodePage(std::uint32_t codePage);

// The charset of the platform's ANSI code page, asked anew at every call; kCharsetAscii when the platform
// does not tell its code page, kCharsetSystem when that code page has no charset.
CharsetCode systemCharset();

}  // namespace owlkit
