// Values of the open key: types, typed reads and writes.
#include <algorithm>
#include <limits>

#include "foundation/errors.h"
#include "foundation/registry/registry_key.h"
#include "foundation/text/number.h"

namespace owlkit {
namespace {

constexpr std::size_t kDataLimit = 16383;        // bytes of one value
constexpr std::size_t kMultiStringLimit = 8191;  // code units of all items with their NULs
constexpr std::uint32_t kExpansionRoom = 16383;  // code units
constexpr std::size_t kUnit = sizeof(char16_t);

}  // namespace

bool RegistryKey::deleteValue(const std::u16string& name) {
    requireWritable();
    return platform::deleteValue(handle_.get(), name) == platform::kSuccess;
}

bool RegistryKey::valueExists(const std::u16string& name) const {
    requireOpen();
    return platform::queryValue(handle_.get(), name, nullptr, nullptr, nullptr) == platform::kSuccess;
}

RegistryValueType RegistryKey::valueType(const std::u16string& name) const {
    requireOpen();
    std::uint32_t type = platform::kRegNone;
    if (platform::queryValue(handle_.get(), name, &type, nullptr, nullptr) != platform::kSuccess)
        throwNotFound();
    switch (type) {
        case platform::kRegDword:
            return RegistryValueType::Dword;
        case platform::kRegQword:
            return RegistryValueType::Qword;
        case platform::kRegSz:
            return RegistryValueType::String;
        case platform::kRegExpandSz:
            return RegistryValueType::ExpandableString;
        case platform::kRegMultiSz:
            return RegistryValueType::MultiString;
        case platform::kRegBinary:
            return RegistryValueType::Binary;
        default:
            return RegistryValueType::None;
    }
}

std::uint32_t RegistryKey::valueSize(const std::u16string& name) const {
    requireOpen();
    std::uint32_t size = 0;
    if (platform::queryValue(handle_.get(), name, nullptr, nullptr, &size) != platform::kSuccess)
        throwNotFound();
    return size;
}

template <class Number>
Number RegistryKey::readNumber(const std::u16string& name) const {
    Number number = 0;
    std::uint32_t size = sizeof number;
    // Nothing keeps a stored number from being shorter than its type says.
    if (platform::queryValue(handle_.get(), name, nullptr, &number, &size) != platform::kSuccess ||
        size != sizeof number)
        throwFailed();
    return number;
}

std::int32_t RegistryKey::readDword(const std::u16string& name) const {
    const RegistryValueType type = valueType(name);
    if (type == RegistryValueType::Dword)
        return readNumber<std::int32_t>(name);
    if (type != RegistryValueType::Qword)
        throwInvalidType();
    const auto number = readNumber<std::int64_t>(name);
    if (number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max())
        throwRangeError();
    return static_cast<std::int32_t>(number);
}

std::int64_t RegistryKey::readQword(const std::u16string& name) const {
    const RegistryValueType type = valueType(name);
    if (type == RegistryValueType::Qword)
        return readNumber<std::int64_t>(name);
    if (type == RegistryValueType::Dword)
        return readNumber<std::int32_t>(name);
    throwInvalidType();
}

std::u16string RegistryKey::readText(const std::u16string& name, RegistryValueType type) const {
    switch (type) {
        case RegistryValueType::Dword:
        case RegistryValueType::Qword:
            return formatNumber<char16_t>(readQword(name));
        case RegistryValueType::String:
        case RegistryValueType::ExpandableString:
        case RegistryValueType::MultiString:
            break;
        default:
            throwInvalidType();
    }
    std::uint32_t size = valueSize(name);
    std::u16string text(size / kUnit + size % kUnit, u'\0');  // room for an odd last byte too
    if (platform::queryValue(handle_.get(), name, nullptr, text.data(), &size) != platform::kSuccess)
        throwFailed();
    // The value may have become shorter since its size was asked.
    text.resize(size / kUnit);
    if (!text.empty() && text.back() == u'\0')
        text.pop_back();
    return text;
}

std::u16string RegistryKey::readString(const std::u16string& name) const {
    return readText(name, valueType(name));
}

std::u16string RegistryKey::readExpandedString(const std::u16string& name) const {
    const RegistryValueType type = valueType(name);
    const std::u16string text = readText(name, type);
    return type == RegistryValueType::ExpandableString ? expanded(text) : text;
}

std::u16string RegistryKey::expanded(const std::u16string& text) {
    std::u16string buffer(kExpansionRoom, u'\0');
    const std::uint32_t length = platform::expandEnvironmentStrings(text, buffer.data(), kExpansionRoom) - 1;
    if (length >= kExpansionRoom)  // also the 0 of a failure, wrapped around
        return text;
    buffer.resize(length);
    return buffer;
}

std::size_t RegistryKey::readMultiString(const std::u16string& name,
                                         std::vector<std::u16string>& items) const {
    items.clear();
    const std::u16string text = readString(name);
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(u'\0', start), text.size());
        items.emplace_back(text, start, end - start);
        start = end + 1;
    }
    return items.size();
}

std::uint32_t RegistryKey::readBinary(const std::u16string& name, void* buffer,
                                      std::uint32_t capacity) const {
    std::uint32_t size = valueSize(name);
    if (buffer == nullptr)
        throwInvalidPointer();
    if (size > capacity)
        throwInvalidSize();
    if (size != 0 && platform::queryValue(handle_.get(), name, nullptr, buffer, &size) != platform::kSuccess)
        throwFailed();
    return size;
}

void RegistryKey::writeData(const std::u16string& name, std::uint32_t type, const void* data,
                            std::size_t size) {
    requireWritable();
    if (size > kDataLimit)
        throwInvalidSize();
    if (platform::setValue(handle_.get(), name, type, data, static_cast<std::uint32_t>(size)) !=
        platform::kSuccess)
        throwFailed();
}

void RegistryKey::writeText(const std::u16string& name, std::uint32_t type, const std::u16string& text) {
    writeData(name, type, text.c_str(), (text.size() + 1) * kUnit);
}

void RegistryKey::writeDword(const std::u16string& name, std::uint32_t value) {
    writeData(name, platform::kRegDword, &value, sizeof value);
}

void RegistryKey::writeQword(const std::u16string& name, std::uint64_t value) {
    writeData(name, platform::kRegQword, &value, sizeof value);
}

void RegistryKey::writeString(const std::u16string& name, const std::u16string& text) {
    writeText(name, platform::kRegSz, text);
}

void RegistryKey::writeExpandableString(const std::u16string& name, const std::u16string& text) {
    writeText(name, platform::kRegExpandSz, text);
}

void RegistryKey::writeMultiString(const std::u16string& name, const std::vector<std::u16string>& items) {
    requireWritable();
    std::u16string joined;
    for (const std::u16string& item : items) {
        joined += item;
        joined += u'\0';
    }
    if (joined.size() > kMultiStringLimit)
        throwInvalidSize();
    writeText(name, platform::kRegMultiSz, joined);
}

void RegistryKey::writeBinary(const std::u16string& name, const void* data, std::size_t size) {
    requireWritable();
    if (data == nullptr && size != 0)
        throwInvalidPointer();
    if (size == 0)
        throwInvalidSize();
    writeData(name, platform::kRegBinary, data, size);
}

}  // namespace owlkit
