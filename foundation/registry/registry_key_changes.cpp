// Changes to keys and values. They stand apart so that a program that only reads is linked without them.
#include <cstddef>
#include <utility>

#include "foundation/errors.h"
#include "foundation/registry/registry_internal.h"
#include "foundation/registry/registry_key.h"

namespace owlkit {
namespace {

constexpr std::size_t kDataLimit = 16383;        // bytes of one value
constexpr std::size_t kMultiStringLimit = 8191;  // code units of all items with their NULs

}  // namespace

void RegistryKey::requireWritable() const {
    if (state_ == KeyAccessState::ReadOnly)
        throwReadOnly();
    if (state_ != KeyAccessState::ReadWrite)
        throwInvalidState();
}

bool RegistryKey::create(RegistryRoot root, const std::u16string& path) {
    checkPath(path);
    if (path.empty())
        throwInvalidArgument();
    std::u16string copy(path);
    if (platform::createKey(rootHandle(root), copy, 0, platform::kKeyAllAccess | viewFlag(), handle_) !=
        platform::kSuccess)
        return false;
    state_ = KeyAccessState::ReadWrite;
    root_ = root;
    path_ = std::move(copy);
    return true;
}

bool RegistryKey::deleteKey(RegistryRoot root, const std::u16string& path) {
    checkPath(path);
    const std::u16string copy(path);  // closing empties `path` if it is this object's own
    if (root == root_ && copy == path_)
        close();
    const auto error = platform::deleteKeyEx(rootHandle(root), copy, viewFlag());
    return (error ? *error : platform::deleteKey(rootHandle(root), copy)) == platform::kSuccess;
}

bool RegistryKey::clear() {
    requireWritable();
    const RegistryRoot root = root_;
    const std::u16string path(path_);
    return deleteKey(root, path) && create(root, path);
}

bool RegistryKey::flush() {
    requireWritable();
    return platform::flushKey(handle_.get()) == platform::kSuccess;
}

bool RegistryKey::deleteValue(const std::u16string& name) {
    requireWritable();
    return platform::deleteValue(handle_.get(), name) == platform::kSuccess;
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
    writeData(name, type, text.c_str(), (text.size() + 1) * sizeof(char16_t));
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
