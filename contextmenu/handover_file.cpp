#include "contextmenu/handover_file.h"

#include <algorithm>
#include <exception>

#include "foundation/charset/convert.h"
#include "foundation/path/path.h"
#include "foundation/process/folders.h"
#include "foundation/stream/file_stream.h"
#include "foundation/text/number.h"
#include "platform/file.h"

namespace nmshell {
namespace {

constexpr std::uint32_t kNameCycle = 100;
constexpr std::uint32_t kNameFactor = 0xEDB88320;
constexpr std::int32_t kNameDigits = 8;

// Makes the name free. It can be known beforehand, so a link may have been laid there: deleting removes that,
// not what it leads to, and what cannot be deleted must not be written through.
bool makeFree(const std::u16string& name) {
    return platform::deleteFile(name).succeeded() || owlkit::pathType(name) == owlkit::PathType::Unreadable;
}

// Deletes the file at the end, unless it is to be kept.
class Discarded {
  public:
    explicit Discarded(const std::u16string& name) : name_(name) {}
    Discarded(const Discarded&) = delete;
    Discarded& operator=(const Discarded&) = delete;
    ~Discarded() {
        try {
            if (!kept_)
                static_cast<void>(platform::deleteFile(name_));
        } catch (const std::exception&) {  // out of memory once more
        }
    }
    void keep() { kept_ = true; }

  private:
    const std::u16string& name_;
    bool kept_ = false;
};

}  // namespace

std::u16string handoverFileName(std::uint32_t counter, std::u16string_view extension) {
    std::u16string name;
    if (!owlkit::getFolder(owlkit::FolderCode::Temporary, name))
        name.clear();
    const std::uint32_t number = (counter % kNameCycle + 1) * kNameFactor;
    name += u"tfn_";
    name += owlkit::formatNumber<char16_t>(number, owlkit::NumberFormat::LowerHex, kNameDigits);
    name += extension;
    return name;
}

bool writeHandoverFile(const std::u16string& name, std::u16string_view data) {
    const std::string bytes = owlkit::ToNarrow(data, owlkit::kCharsetUtf8);
    if (!makeFree(name))
        return false;
    Discarded unlessWhole(name);
    owlkit::FileStream file;  // closed before it is discarded
    if (!file.open(name, owlkit::OpenMode::CreateWrite, owlkit::TextEncoding::Utf8) ||
        file.write(bytes.data(), bytes.size()) != bytes.size())
        return false;
    unlessWhole.keep();
    return true;
}

std::u16string readHandoverFile(const std::u16string& name) {
    owlkit::FileStream file;
    if (!file.open(name, owlkit::OpenMode::Read, owlkit::TextEncoding::Utf8))
        return {};
    std::string bytes(static_cast<std::size_t>(std::min<std::int64_t>(file.size(), kMaxHandoverBytes)), '\0');
    bytes.resize(file.read(bytes.data(), bytes.size()));
    file.close();
    static_cast<void>(platform::deleteFile(name));  // what it held is known all the same
    // U+FFFD for what is not UTF-8: a damaged path must name no file rather than another one.
    return owlkit::ToWide(bytes, owlkit::kCharsetUtf8, owlkit::ErrorPolicy::Fixed);
}

}  // namespace nmshell
