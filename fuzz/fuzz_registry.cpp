// A registry value of any type and size behind every reader: each gives what type and bytes mean, or the
// error that it promises, and the settings have their defaults for all that is not theirs.
#include <cstring>

#include "comserver/identifiers.h"
#include "comserver/settings.h"
#include "foundation/registry/registry_key.h"
#include "platform/host/fault.h"
#include "platform/host/registry_host.h"
#include "testing/fuzz.h"

using fuzz::require;
using owlkit::RegistryKey;
using platform::host::putValue;

namespace {

const std::u16string kName = u"Value";
constexpr owlkit::RegistryRoot kUser = owlkit::RegistryRoot::CurrentUser;
const std::u16string kPath(nmshell::kSettingsPath);
const std::u16string kSettings = u"HKEY_CURRENT_USER\\" + kPath;
const std::u16string kApprovals = u"HKEY_LOCAL_MACHINE\\" + std::u16string(nmshell::kApprovalPath);

struct Stored {
    std::uint32_t type;
    std::string bytes;

    bool isText() const { return type == 1 || type == 2 || type == 7; }
};

// What a reader gives, or the text of its error.
template <class Value>
struct Read {
    template <class Call>
    explicit Read(Call call) : error(test::errorOf([&] { value = call(); })) {}
    bool operator==(const Read&) const = default;

    Value value{};
    std::string error;
};
template <class Call>
Read(Call) -> Read<std::invoke_result_t<Call>>;

void numbers(RegistryKey& key, const Stored& stored) {
    const Read read([&] { return key.readQword(kName); });
    const bool isNumber = stored.type == 4 || stored.type == 11;
    if (read.error.empty()) {
        require(isNumber && stored.bytes.size() == (stored.type == 4 ? 4u : 8u));
        require(std::memcmp(&read.value, stored.bytes.data(), stored.bytes.size()) == 0);
    } else {
        require(read.error == (isNumber ? "failed" : "invalid type"));
    }
    const auto low = static_cast<std::int32_t>(read.value);
    require(stored.type != 4 || low == read.value);
    const Read narrow([&] { return key.readDword(kName); });
    require(narrow.error == (low == read.value ? read.error : "range error"));
    require(!narrow.error.empty() || narrow.value == low);
    require(RegistryKey::readQwordOr(kUser, kPath, kName, -5) == (read.error.empty() ? read.value : -5));
    require(RegistryKey::readDwordOr(kUser, kPath, kName, -5) == (narrow.error.empty() ? low : -5));
}

void texts(RegistryKey& key, const Stored& stored) {
    const Read read([&] { return key.readString(kName); });
    if (stored.isText()) {
        std::u16string text = fuzz::unitsOf(stored.bytes);
        if (text.ends_with(u'\0'))
            text.pop_back();
        require(read.error.empty() && read.value == text);
    } else {
        const Read number([&] { return fuzz::widened(std::to_string(key.readQword(kName))); });
        require(read == number);
    }
    std::u16string joined;
    const Read items([&] {
        std::vector<std::u16string> list;
        key.readMultiString(kName, list);
        return list;
    });
    for (const std::u16string& item : items.value)
        joined.append(item).append(1, u'\0');
    const bool isOpen = !read.value.empty() && !read.value.ends_with(u'\0');
    require(items.error == read.error && joined == read.value + std::u16string(isOpen, u'\0'));
    const Read expanded([&] { return key.readExpandedString(kName); });
    require(expanded.error == read.error);
    if (stored.type != 2 || read.value.find(u'%') == read.value.npos) {
        // The system expands up to the first zero.
        const std::size_t end = stored.type == 2 ? read.value.find(u'\0') : read.value.npos;
        require(expanded.value == read.value.substr(0, end));
    }
}

void bytes(RegistryKey& key, const Stored& stored) {
    const auto size = static_cast<std::uint32_t>(stored.bytes.size());
    require(key.valueExists(kName) && key.valueSize(kName) == size);
    std::string read(size + 1, '?');
    require(key.readBinary(kName, read.data(), size) == size);
    require(read == stored.bytes + '?');
    if (size > 0)
        require(test::errorOf([&] { key.readBinary(kName, read.data(), size - 1); }) == "invalid size");
}

void approve() {
    platform::host::putText(kApprovals, nmshell::kFileSystemClassId, 1, nmshell::kHandlerName);
}

void settings(RegistryKey& key, const Stored& stored) {
    for (const std::u16string_view name : {u"Enabled", u"Icons", u"Language"})
        putValue(kSettings, name, stored.type, stored.bytes);
    putValue(kApprovals, nmshell::kFileSystemClassId, stored.type, stored.bytes);
    const std::u16string text = stored.isText() ? key.readString(kName) : u"";
    const bool approved = text == nmshell::kHandlerName;
    require(nmshell::IsApproved() == approved && nmshell::IsEnabled() == approved);  // a text is no 0
    const bool zero = stored.type == 4 && stored.bytes == std::string(4, '\0');
    require(nmshell::ShowIcons() == !zero);
    require(nmshell::GetLanguageSetting() == (stored.type == 1 ? text : u""));
    approve();
    require(nmshell::IsEnabled() == !zero);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::uint32_t asked = fuzz::pick(input, 3);
    Stored stored;
    stored.type = input.ConsumeBool() ? input.ConsumeIntegral<std::uint32_t>() : fuzz::pick(input, 12);
    const bool isLong = fuzz::pick(input, 40) == 40;
    stored.bytes = input.ConsumeRemainingBytesAsString();
    if (isLong)  // about the limits of a value
        stored.bytes.resize(16370 + stored.bytes.size() % 20, 'x');
    {
        putValue(kSettings, kName, stored.type, stored.bytes);
        RegistryKey key;
        require(key.create(kUser, kPath));
        constexpr void (*kTries[])(RegistryKey&, const Stored&) = {numbers, texts, bytes, settings};
        kTries[asked](key, stored);
    }
    require(platform::host::openKeyCount() == 0);
    platform::host::resetRegistry();
    platform::fault::resetCounts();
    return 0;
}
