// A registry value of any type and size behind every reader: each gives what type and bytes mean, or the
// error that it promises, and the settings have their defaults for all that is not theirs.
#include <cstring>
#include <limits>

#include "comserver/identifiers.h"
#include "comserver/settings.h"
#include "foundation/path/path_list.h"
#include "foundation/registry/registry_key.h"
#include "fuzz/fuzz.h"
#include "platform/host/fault.h"
#include "platform/host/registry_host.h"

using fuzz::require;
using owlkit::RegistryKey;
using owlkit::RegistryRoot;
using owlkit::RegistryValueType;
using platform::host::putValue;

namespace {

constexpr std::u16string_view kName = u"Value";
constexpr std::size_t kLongestText = 8190;
constexpr std::size_t kLongestData = 16383;
const std::u16string kPath(nmshell::kSettingsPath);

struct Stored {
    std::uint32_t type;
    std::string bytes;

    bool isText() const { return type == 1 || type == 2 || type == 7; }
    bool isNumber() const { return type == 4 || type == 11; }
    std::size_t numberSize() const { return type == 4 ? 4 : 8; }
};

template <class Number>
Number number(const std::string& bytes) {
    Number value = 0;
    std::memcpy(&value, bytes.data(), sizeof(value));
    return value;
}

// What reading as a 64-bit number gives.
std::string expectNumber(const Stored& stored, std::int64_t& value) {
    if (!stored.isNumber())
        return "invalid type";
    if (stored.bytes.size() != stored.numberSize())
        return "failed";
    value = stored.type == 4 ? number<std::int32_t>(stored.bytes) : number<std::int64_t>(stored.bytes);
    return {};
}

std::string expectText(const Stored& stored, std::u16string& text) {
    std::int64_t value = 0;
    if (!stored.isText()) {
        const std::string error = expectNumber(stored, value);
        const std::string decimal = std::to_string(value);
        text.assign(decimal.begin(), decimal.end());
        return error;
    }
    text = fuzz::units(stored.bytes);
    if (text.ends_with(u'\0'))
        text.pop_back();
    return {};
}

void numbers(const RegistryKey& key, const std::u16string& name, const Stored& stored) {
    std::int64_t expected = 0;
    const std::string error = expectNumber(stored, expected);
    std::int64_t read = 0;
    require(fuzz::error([&] { read = key.readQword(name); }) == error);
    require(read == expected);
    const bool fits = expected >= std::numeric_limits<std::int32_t>::min() &&
                      expected <= std::numeric_limits<std::int32_t>::max();
    std::int32_t narrow = 0;
    require(fuzz::error([&] { narrow = key.readDword(name); }) == (fits ? error : "range error"));
    require(narrow == (fits ? expected : 0));
    const RegistryRoot root = RegistryRoot::CurrentUser;
    require(RegistryKey::readQwordOr(root, kPath, name, -5) == (error.empty() ? expected : -5));
    require(RegistryKey::readDwordOr(root, kPath, name, -5) == (error.empty() && fits ? narrow : -5));
}

void texts(const RegistryKey& key, const std::u16string& name, const Stored& stored) {
    std::u16string expected;
    const std::string error = expectText(stored, expected);
    std::u16string read;
    require(fuzz::error([&] { read = key.readString(name); }) == error);
    require(!error.empty() || read == expected);
    std::vector<std::u16string> items(1);
    require(fuzz::error([&] { key.readMultiString(name, items); }) == error);
    std::u16string joined;
    for (const std::u16string& item : items) {
        require(item.find(u'\0') == item.npos);
        joined.append(item).append(1, u'\0');
    }
    if (error.empty() && !expected.empty() && !expected.ends_with(u'\0'))
        expected += u'\0';
    require(joined == (error.empty() ? expected : u""));
    require(fuzz::error([&] { read = key.readExpandedString(name); }) == error);
    if (error.empty() && (stored.type != 2 || expected.find(u'%') == expected.npos)) {
        // The system expands up to the first zero.
        const std::u16string plain = key.readString(name);
        require(read == (stored.type == 2 ? plain.substr(0, plain.find(u'\0')) : plain));
    }
}

void bytes(const RegistryKey& key, const std::u16string& name, const Stored& stored) {
    const auto size = static_cast<std::uint32_t>(stored.bytes.size());
    require(key.valueExists(name));
    require(key.valueSize(name) == size);
    std::string read(size + 1, '?');
    require(key.readBinary(name, read.data(), size) == size);
    require(read == stored.bytes + '?');
    if (size > 0)
        require(fuzz::error([&] { key.readBinary(name, read.data(), size - 1); }) == "invalid size");
    require(fuzz::error([&] { key.readBinary(name, nullptr, size); }) == "invalid pointer");
}

void settings(const Stored& stored) {
    const std::u16string root = u"HKEY_CURRENT_USER\\" + kPath;
    for (const std::u16string_view name : {u"Enabled", u"Icons", u"Language"})
        putValue(root, name, stored.type, stored.bytes);
    const std::u16string approvals = u"HKEY_LOCAL_MACHINE\\" + std::u16string(nmshell::kApprovalPath);
    putValue(approvals, nmshell::kFileSystemClassId, stored.type, stored.bytes);
    std::u16string text;
    const bool approved = expectText(stored, text).empty() && text == nmshell::kHandlerName;
    require(nmshell::IsApproved() == approved);
    require(nmshell::IsEnabled() == approved);  // a text is no 0
    const bool zero = stored.type == 4 && stored.bytes == std::string(4, '\0');
    require(nmshell::ShowIcons() == !zero);
    require(nmshell::GetLanguageSetting() == (stored.type == 1 ? text : u""));
    platform::host::putText(approvals, nmshell::kFileSystemClassId, 1, nmshell::kHandlerName);
    require(nmshell::IsEnabled() == !zero);
}

void writeSettings(const Stored& stored) {
    const std::u16string text = fuzz::units(stored.bytes);
    const bool flag = stored.type % 2 != 0;
    const std::u16string approvals = u"HKEY_LOCAL_MACHINE\\" + std::u16string(nmshell::kApprovalPath);
    require(!nmshell::SetEnabled(flag) && !nmshell::SetShowIcons(flag) && !nmshell::SetLanguageSetting(text));
    platform::host::putText(approvals, nmshell::kFileSystemClassId, 1, nmshell::kHandlerName);
    require(nmshell::SetEnabled(flag) && nmshell::IsEnabled() == flag);
    require(nmshell::SetShowIcons(!flag) && nmshell::ShowIcons() == !flag);
    const bool fits = text.size() <= kLongestText;
    require(nmshell::SetLanguageSetting(text) == fits);
    require(nmshell::GetLanguageSetting() == (fits ? text : u""));
}

// Writes, by the open key or by one call, and reads what is then there.
void writeAndRead(const Stored& stored) {
    const RegistryRoot root = RegistryRoot::CurrentUser;
    const std::u16string name(kName);
    const std::u16string text = fuzz::units(stored.bytes);
    const bool fits = text.size() <= kLongestText;
    RegistryKey key;
    require(key.create(root, kPath));
    const auto wrote = [&](bool good, auto write) {
        require(fuzz::error(write) == (good ? "" : "invalid size"));
        return good;
    };
    if (wrote(fits, [&] { key.writeString(name, text); }))
        require(RegistryKey::readRawStringOr(root, kPath, name, u"-") == text);
    if (wrote(fits, [&] { return RegistryKey::writeExpandableString(root, kPath, name, text); }))
        require(RegistryKey::valueType(root, kPath, name) == RegistryValueType::ExpandableString);
    const owlkit::PathList paths = owlkit::PathList::fromText(text);
    std::vector<std::u16string> items(paths.begin(), paths.end());
    std::erase(items, u"");  // an empty one would end the list for others
    std::size_t length = 0;
    for (const std::u16string& item : items)
        length += item.size() + 1;
    if (wrote(length <= kLongestText,
              [&] { return RegistryKey::writeMultiString(root, kPath, name, items); }))
        require(RegistryKey::readMultiStringOr(root, kPath, name, {u"-"}) == items);
    const auto number = static_cast<std::uint32_t>(stored.bytes.size() * 0x9E3779B9u);
    require(RegistryKey::writeDword(root, kPath, name, number));
    require(key.readDword(name) == static_cast<std::int32_t>(number));
    require(RegistryKey::writeQword(root, kPath, name, std::uint64_t{number} << 7));
    require(key.readQword(name) == std::int64_t{number} << 7);
    const bool holds = !stored.bytes.empty() && stored.bytes.size() <= kLongestData;
    if (wrote(holds, [&] { key.writeBinary(name, stored.bytes.data(), stored.bytes.size()); }))
        require(key.valueSize(name) == stored.bytes.size());
    require(RegistryKey::deleteValue(root, kPath, name) && !key.valueExists(name));
    require(RegistryKey::readStringOr(root, kPath, name, u"none") == u"none");
}

using Reader = void(const RegistryKey& key, const std::u16string& name, const Stored& stored);

void readBy(Reader& reader, const Stored& stored) {
    const std::u16string name(kName);
    putValue(u"HKEY_CURRENT_USER\\" + kPath, name, stored.type, stored.bytes);
    RegistryKey key;
    require(key.open(RegistryRoot::CurrentUser, kPath, owlkit::RegistryMode::ReadOnly));
    reader(key, name, stored);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const int asked = input.ConsumeIntegralInRange(0, 5);
    Stored stored;
    stored.type = input.ConsumeBool() ? input.ConsumeIntegral<std::uint32_t>()
                                      : input.ConsumeIntegralInRange<std::uint32_t>(0, 12);
    const bool isLong = input.ConsumeIntegralInRange(0, 40) == 40;
    stored.bytes = input.ConsumeRemainingBytesAsString();
    if (isLong)  // about the limits of a value
        stored.bytes.resize(16370 + stored.bytes.size() % 20, 'x');
    if (asked == 0)
        readBy(numbers, stored);
    else if (asked == 1)
        readBy(texts, stored);
    else if (asked == 2)
        readBy(bytes, stored);
    else if (asked == 3)
        settings(stored);
    else if (asked == 4)
        writeSettings(stored);
    else
        writeAndRead(stored);
    require(platform::host::openKeyCount() == 0);
    platform::host::resetRegistry();
    platform::fault::resetCounts();
    return 0;
}
