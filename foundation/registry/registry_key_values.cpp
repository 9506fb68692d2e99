// Values of the open key: types and typed reads.
#include <algorithm>
#include <limits>

#include "foundation/errors.h"
#include "foundation/registry/registry_internal.h"
#include "foundation/registry/registry_key.h"
#include "foundation/text/number.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kExpansionRoom = 16383;  // code units
constexpr std::size_t kUnit = sizeof(char16_t);

template <class Number>
Number readNumber(const platform::RegistryHandle& key, const std::u16string& name) {
    Number number = 0;
    std::uint32_t size = sizeof number;
    // Nothing keeps a stored number from being shorter than its type says.
    if (platform::queryValue(key.get(), name, nullptr, &number, &size) != platform::kSuccess ||
        size != sizeof number)
        throwFailed();
    return number;
}

}  // namespace

bool RegistryKey::valueExists(const std::u16string& name) const {
    requireOpen();
    return platform::queryValue(handle_.get(), name, nullptr, nullptr, nullptr) == platform::kSuccess;
}

RegistryValueType RegistryKey::valueType(const std::u16string& name) const {
    requireOpen();
    std::uint32_t type = platform::kRegNone;
    if (platform::queryValue(handle_.get(), name, &type, nullptr, nullptr) != platform::kSuccess)
        throwNotFound();
    return valueTypeOf(type);
}

std::uint32_t RegistryKey::valueSize(const std::u16string& name) const {
    requireOpen();
    std::uint32_t size = 0;
    if (platform::queryValue(handle_.get(), name, nullptr, nullptr, &size) != platform::kSuccess)
        throwNotFound();
    return size;
}

std::int32_t RegistryKey::readDword(const std::u16string& name) const {
    const RegistryValueType type = valueType(name);
    if (type == RegistryValueType::Dword)
        return readNumber<std::int32_t>(handle_, name);
    if (type != RegistryValueType::Qword)
        throwInvalidType();
    const auto number = readNumber<std::int64_t>(handle_, name);
    if (number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max())
        throwRangeError();
    return static_cast<std::int32_t>(number);
}

std::int64_t RegistryKey::readQword(const std::u16string& name) const {
    const RegistryValueType type = valueType(name);
    if (type == RegistryValueType::Qword)
        return readNumber<std::int64_t>(handle_, name);
    if (type == RegistryValueType::Dword)
        return readNumber<std::int32_t>(handle_, name);
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
            return readUnits(name);
        case RegistryValueType::None:
        case RegistryValueType::Binary:
            break;
    }
    throwInvalidType();
}

std::u16string RegistryKey::readUnits(const std::u16string& name) const {
    std::uint32_t size = valueSize(name);
    std::u16string text(size / kUnit + size % kUnit, u'\0');  // room for an odd last byte too
    if (platform::queryValue(handle_.get(), name, nullptr, text.data(), &size) != platform::kSuccess)
        throwFailed();
    // The value may have become shorter since its size was asked.
    text.resize(storedText(text.data(), size).size());
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

}  // namespace owlkit
