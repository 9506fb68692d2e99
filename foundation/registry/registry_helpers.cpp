// The one-call helpers of RegistryKey.
#include <stdexcept>

#include "foundation/registry/registry_key.h"

namespace owlkit {
namespace {

constexpr std::size_t kExpandableLimit = 16384;  // a longer fallback is not expanded

// What `read(key)` answers on the key; `missing()` when the key does not open or the value is not there;
// `fallback` when the read throws.
template <class Result, class Read, class Missing>
Result readOr(RegistryRoot root, const std::u16string& path, const std::u16string& name,
              const Result& fallback, Read read, Missing missing) {
    try {
        RegistryKey key;
        if (key.open(root, path, RegistryMode::ReadOnly) && key.valueExists(name))
            return read(key);
    } catch (const std::exception&) {
        return fallback;
    }
    return missing();
}

template <class Result, class Read>
Result readOr(RegistryRoot root, const std::u16string& path, const std::u16string& name,
              const Result& fallback, Read read) {
    return readOr(root, path, name, fallback, read, [&] { return fallback; });
}

template <class Write>
bool createAndWrite(RegistryRoot root, const std::u16string& path, Write write) {
    RegistryKey key;
    if (!key.create(root, path))
        return false;
    write(key);
    return true;
}

}  // namespace

std::u16string RegistryKey::readStringOr(RegistryRoot root, const std::u16string& path,
                                         const std::u16string& name, const std::u16string& fallback) {
    return readOr(
        root, path, name, fallback, [&](const RegistryKey& key) { return key.readExpandedString(name); },
        [&] { return fallback.size() < kExpandableLimit ? expanded(fallback) : fallback; });
}

std::u16string RegistryKey::readRawStringOr(RegistryRoot root, const std::u16string& path,
                                            const std::u16string& name, const std::u16string& fallback) {
    return readOr(root, path, name, fallback, [&](const RegistryKey& key) { return key.readString(name); });
}

std::int32_t RegistryKey::readDwordOr(RegistryRoot root, const std::u16string& path,
                                      const std::u16string& name, std::int32_t fallback) {
    return readOr(root, path, name, fallback, [&](const RegistryKey& key) { return key.readDword(name); });
}

std::int64_t RegistryKey::readQwordOr(RegistryRoot root, const std::u16string& path,
                                      const std::u16string& name, std::int64_t fallback) {
    return readOr(root, path, name, fallback, [&](const RegistryKey& key) { return key.readQword(name); });
}

std::vector<std::u16string> RegistryKey::readMultiStringOr(RegistryRoot root, const std::u16string& path,
                                                           const std::u16string& name,
                                                           const std::vector<std::u16string>& fallback) {
    return readOr(root, path, name, fallback, [&](const RegistryKey& key) {
        std::vector<std::u16string> items;
        key.readMultiString(name, items);
        return items;
    });
}

bool RegistryKey::writeDword(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                             std::uint32_t value) {
    return createAndWrite(root, path, [&](RegistryKey& key) { key.writeDword(name, value); });
}

bool RegistryKey::writeQword(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                             std::uint64_t value) {
    return createAndWrite(root, path, [&](RegistryKey& key) { key.writeQword(name, value); });
}

bool RegistryKey::writeString(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                              const std::u16string& text) {
    return createAndWrite(root, path, [&](RegistryKey& key) { key.writeString(name, text); });
}

bool RegistryKey::writeExpandableString(RegistryRoot root, const std::u16string& path,
                                        const std::u16string& name, const std::u16string& text) {
    return createAndWrite(root, path, [&](RegistryKey& key) { key.writeExpandableString(name, text); });
}

bool RegistryKey::writeMultiString(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                                   const std::vector<std::u16string>& items) {
    return createAndWrite(root, path, [&](RegistryKey& key) { key.writeMultiString(name, items); });
}

RegistryValueType RegistryKey::valueType(RegistryRoot root, const std::u16string& path,
                                         const std::u16string& name) {
    RegistryKey key;
    return key.create(root, path) ? key.valueType(name) : RegistryValueType::None;
}

bool RegistryKey::deleteValue(RegistryRoot root, const std::u16string& path, const std::u16string& name) {
    RegistryKey key;
    return key.open(root, path, RegistryMode::ReadWrite) && key.deleteValue(name);
}

}  // namespace owlkit
