#include "contextmenu/handover_file.h"

#include <algorithm>

#include "foundation/charset/convert.h"
#include "foundation/process/folders.h"
#include "foundation/stream/file_stream.h"
#include "foundation/text/number.h"
#include "platform/file.h"

namespace nmshell {
namespace {

constexpr std::uint32_t kNameCycle = 100;
constexpr std::uint32_t kNameFactor = 0xEDB88320;
constexpr std::int32_t kNameDigits = 8;

}  // namespace

std::u16string handoverFileName(std::uint32_t counter, std::u16string_view extension) {
    std::u16string name;
    if (!owlkit::getFolder(owlkit::kFolderTemporary, name))
        name.clear();
    const std::uint32_t number = (counter % kNameCycle + 1) * kNameFactor;
    name += u"tfn_";
    name += owlkit::formatNumber<char16_t>(number, owlkit::NumberFormat::LowerHex, kNameDigits);
    name += extension;
    return name;
}

bool writeHandoverFile(const std::u16string& name, std::u16string_view data) {
    owlkit::FileStream file;
    if (!file.open(name, owlkit::kCreateWrite, owlkit::kEncodingUtf8))
        return false;
    const std::string bytes = owlkit::ToNarrow(data, owlkit::kCharsetUtf8);
    return file.write(bytes.data(), bytes.size()) == bytes.size();
}

std::u16string readHandoverFile(const std::u16string& name) {
    owlkit::FileStream file;
    if (!file.open(name, owlkit::kOpenRead, owlkit::kEncodingUtf8))
        return {};
    std::string bytes(static_cast<std::size_t>(std::min<std::int64_t>(file.size(), kMaxHandoverBytes)), '\0');
    bytes.resize(file.read(bytes.data(), bytes.size()));
    file.close();
    platform::deleteFile(name);
    // U+FFFD for what is not UTF-8: a damaged path must name no file rather than another one.
    return owlkit::ToWide(bytes, owlkit::kCharsetUtf8, owlkit::ErrorPolicy::Fixed);
}

}  // namespace nmshell
