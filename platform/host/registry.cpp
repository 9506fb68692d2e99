#include "platform/registry.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/host/fault.h"
#include "platform/host/registry_hive.h"
#include "platform/host/utf8.h"
#include "platform/one_name.h"

namespace platform {
namespace {

using namespace registry_hive;

// How every call that takes a path or a name begins.
Status begin(std::string_view function, const std::u16string& name) {
    const Status error = fault::next(function);
    return error != kSuccess || isOneName(name) ? error : kErrorInvalidName;
}

// How every call on an open key begins, with the name of a value where it takes one.
Status begin(std::string_view function, KeyRef key, std::uint32_t rights, OpenKey& open,
             const std::u16string& name = {}) {
    const Status error = begin(function, name);
    return error != kSuccess ? error : find(key, rights, open);
}

Status giveName(std::u16string_view source, char16_t* name, std::uint32_t& length) {
    if (source.size() >= length)
        return kErrorMoreData;
    *std::ranges::copy(source, name).out = u'\0';
    length = static_cast<std::uint32_t>(source.size());
    return kSuccess;
}

bool environmentVariable(std::u16string_view name, std::u16string& value) {
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::size_t end = text.find('=');
        if (end == text.npos || upper(fromHostName(text.substr(0, end))) != upper(name))
            continue;
        value = fromHostName(text.substr(end + 1));
        return true;
    }
    return false;
}

}  // namespace

void RegistryTraits::close(Type key) noexcept {
    const HiveLock lock(hiveGuard());
    hive().handles.erase(key);
}

Status openKey(KeyRef parent, const std::u16string& path, std::uint32_t, std::uint32_t access,
               RegistryHandle& key) {
    const HiveLock lock(hiveGuard());
    if (const Status error = begin("RegOpenKeyExW", path); error != kSuccess)
        return error;
    hive().lastAccessMask = access;
    Place place;
    if (const Status error = locate(parent, path, access, place); error != kSuccess)
        return error;
    return place.missing.empty() ? grant(place, access, key) : kErrorFileNotFound;
}

Status createKey(KeyRef parent, const std::u16string& path, std::uint32_t, std::uint32_t access,
                 RegistryHandle& key) {
    const HiveLock lock(hiveGuard());
    if (const Status error = begin("RegCreateKeyExW", path); error != kSuccess)
        return error;
    hive().lastAccessMask = access;
    Place place;
    if (const Status error = locate(parent, path, access, place); error != kSuccess)
        return error;
    const Names above(place.whole.begin(), place.whole.end() - 1);
    if (!place.missing.empty() && (denied(above, kKeyCreateSubKey) || denied(place.whole, access)))
        return kErrorAccessDenied;
    for (const std::u16string& name : place.missing)
        place.node = child(*place.node, name, true);
    return grant(place, access, key);
}

Status deleteKey(KeyRef parent, const std::u16string& path) {
    const HiveLock lock(hiveGuard());
    const Status error = begin("RegDeleteKeyW", path);
    return error != kSuccess ? error : removeKey(parent, path, 0);
}

std::optional<Status> deleteKeyEx(KeyRef parent, const std::u16string& path, std::uint32_t viewFlag) {
    const HiveLock lock(hiveGuard());
    if (fault::next("GetModuleHandleW") != kSuccess || fault::next("GetProcAddress") != kSuccess ||
        !hive().exportsDeleteKeyEx)
        return std::nullopt;
    const Status error = begin("RegDeleteKeyExW", path);
    return error != kSuccess ? error : removeKey(parent, path, viewFlag);
}

Status queryValue(KeyRef key, const std::u16string& name, std::uint32_t* type, void* data,
                  std::uint32_t* size) {
    const HiveLock lock(hiveGuard());
    OpenKey open;
    if (const Status error = begin("RegQueryValueExW", key, kKeyQueryValue, open, name); error != kSuccess)
        return error;
    if (data != nullptr && size == nullptr)
        return kErrorInvalidParameter;
    const auto value = findValue(*open.node, name);
    if (value == open.node->values.end())
        return kErrorFileNotFound;
    if (type != nullptr)
        *type = value->type;
    if (size == nullptr)
        return kSuccess;
    const std::uint32_t room = *size;
    *size = static_cast<std::uint32_t>(value->data.size());
    if (data == nullptr) {
        if (auto change = std::exchange(hive().afterSizeQuery, nullptr))
            change();
        return kSuccess;
    }
    if (room < value->data.size())
        return kErrorMoreData;
    if (!value->data.empty())
        std::memcpy(data, value->data.data(), value->data.size());
    return kSuccess;
}

Status setValue(KeyRef key, const std::u16string& name, std::uint32_t type, const void* data,
                std::uint32_t size) {
    const HiveLock lock(hiveGuard());
    OpenKey open;
    if (const Status error = begin("RegSetValueExW", key, kKeySetValue, open, name); error != kSuccess)
        return error;
    store(*open.node, name, type,
          size == 0 ? std::string() : std::string(static_cast<const char*>(data), size));
    return kSuccess;
}

Status deleteValue(KeyRef key, const std::u16string& name) {
    const HiveLock lock(hiveGuard());
    OpenKey open;
    if (const Status error = begin("RegDeleteValueW", key, kKeySetValue, open, name); error != kSuccess)
        return error;
    const auto value = findValue(*open.node, name);
    if (value == open.node->values.end())
        return kErrorFileNotFound;
    open.node->values.erase(value);
    return kSuccess;
}

Status flushKey(KeyRef key) {
    const HiveLock lock(hiveGuard());
    OpenKey open;
    return begin("RegFlushKey", key, 0, open);
}

Status queryInfoKey(KeyRef key, std::uint32_t* subkeys, std::uint32_t* values) {
    const HiveLock lock(hiveGuard());
    OpenKey open;
    if (const Status error = begin("RegQueryInfoKeyW", key, kKeyQueryValue, open); error != kSuccess)
        return error;
    if (subkeys != nullptr)
        *subkeys = static_cast<std::uint32_t>(open.node->children.size());
    if (values != nullptr)
        *values = static_cast<std::uint32_t>(open.node->values.size());
    return kSuccess;
}

Status enumKey(KeyRef key, std::uint32_t index, char16_t* name, std::uint32_t& length) {
    const HiveLock lock(hiveGuard());
    OpenKey open;
    if (const Status error = begin("RegEnumKeyExW", key, kKeyEnumerateSubKeys, open); error != kSuccess)
        return error;
    if (index >= open.node->children.size())
        return kErrorNoMoreItems;
    return giveName(std::next(open.node->children.begin(), index)->second->name, name, length);
}

Status enumValue(KeyRef key, std::uint32_t index, char16_t* name, std::uint32_t& length) {
    const HiveLock lock(hiveGuard());
    OpenKey open;
    if (const Status error = begin("RegEnumValueW", key, kKeyQueryValue, open); error != kSuccess)
        return error;
    if (index >= open.node->values.size())
        return kErrorNoMoreItems;
    return giveName(open.node->values[index].name, name, length);
}

std::uint32_t expandEnvironmentStrings(const std::u16string& source, char16_t* buffer, std::uint32_t size) {
    if (fault::next("ExpandEnvironmentStringsW") != kSuccess)
        return 0;
    std::u16string_view rest = source.c_str();
    std::u16string result;
    std::u16string value;
    while (!rest.empty()) {
        const std::size_t end = rest.front() == u'%' ? rest.find(u'%', 1) : rest.npos;
        if (end != rest.npos && environmentVariable(rest.substr(1, end - 1), value)) {
            result += value;
            rest.remove_prefix(end + 1);
        } else {
            // An unknown name stays, and the percent sign after it may begin another one.
            const std::size_t plain = std::min(rest.find(u'%', 1), rest.size());
            result += rest.substr(0, plain);
            rest.remove_prefix(plain);
        }
    }
    if (result.size() < size)
        *std::ranges::copy(result, buffer).out = u'\0';
    return static_cast<std::uint32_t>(result.size() + 1);
}

}  // namespace platform
