#include "foundation/charset/charset.h"

#include <iterator>
#include <optional>

#include "platform/locale.h"

namespace owlkit {
namespace {

constexpr std::string_view kNames[] = {
    "SYSTEM",       "UTF-8",        "ASCII",        "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",
    "ISO-8859-4",   "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",   "ISO-8859-9",
    "ISO-8859-15",  "ISO-8859-16",  "WINDOWS-1250", "WINDOWS-1251", "WINDOWS-1252", "WINDOWS-1253",
    "WINDOWS-1254", "WINDOWS-1255", "WINDOWS-1256", "DOS-850",
};
static_assert(std::size(kNames) == kCharsetCount);

}  // namespace

std::string_view CharsetName(CharsetCode code) {
    return code < std::size(kNames) ? kNames[code] : std::string_view{};
}

CharsetCode CharsetFromCodePage(std::uint32_t codePage) {
    if (codePage >= 28591 && codePage <= 28599)
        return kCharsetLatin1 + (codePage - 28591);
    if (codePage >= 1250 && codePage <= 1256)
        return kCharsetWindows1250 + (codePage - 1250);
    switch (codePage) {
        case platform::kUtf8CodePage:
            return kCharsetUtf8;
        case 20127:
            return kCharsetAscii;
        case 28605:
        case 874:  // Compatible: Thai, and yet what was written on such systems before was written so.
            return kCharsetIso8859_15;
        case 850:
            return kCharsetDos850;
        default:
            return kCharsetSystem;
    }
}

CharsetCode systemCharset() {
    const std::optional<std::uint32_t> codePage = platform::ansiCodePage();
    return codePage ? CharsetFromCodePage(*codePage) : kCharsetAscii;
}

}  // namespace owlkit
