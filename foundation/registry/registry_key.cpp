#include "foundation/registry/registry_key.h"

#include <utility>

#include "foundation/errors.h"
#include "foundation/registry/registry_internal.h"

namespace owlkit {
namespace {

using platform::RegistryHandle;

constexpr std::uint32_t kOpenForChange =
    platform::kKeyRead | platform::kKeySetValue | platform::kKeyCreateSubKey;

bool opens(RegistryRoot root, const std::u16string& path, std::uint32_t access) {
    RegistryHandle handle;
    return platform::openKey(rootHandle(root), path, 0, access, handle) == platform::kSuccess;
}

}  // namespace

RegistryValueType valueTypeOf(std::uint32_t type) {
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

RegistryKey::RegistryKey(RegistryKey&& other) noexcept
    : state_(std::exchange(other.state_, KeyAccessState::Closed)),
      root_(std::exchange(other.root_, RegistryRoot::None)),
      handle_(std::move(other.handle_)),
      path_(std::exchange(other.path_, {})) {}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept {
    if (this == &other)
        return *this;
    state_ = std::exchange(other.state_, KeyAccessState::Closed);
    root_ = std::exchange(other.root_, RegistryRoot::None);
    handle_ = std::move(other.handle_);
    path_ = std::exchange(other.path_, {});
    return *this;
}

RegistryKey::~RegistryKey() = default;

void RegistryKey::swap(RegistryKey& other) noexcept {
    RegistryKey held(std::move(other));
    other = std::move(*this);
    *this = std::move(held);
}

std::uint32_t RegistryKey::viewFlag() const {
    switch (view_) {
        case RegistryView::Bits32:
            return platform::kKeyWow64_32Key;
        case RegistryView::Bits64:
            return platform::kKeyWow64_64Key;
        case RegistryView::Default:
            break;
    }
    return 0;
}

void RegistryKey::requireOpen() const {
    if (state_ == KeyAccessState::Closed)
        throwInvalidState();
}

bool RegistryKey::open(RegistryRoot root, const std::u16string& path, RegistryMode mode) {
    checkPath(path);
    const bool forChange = mode == RegistryMode::ReadWrite;
    const std::uint32_t access = (forChange ? kOpenForChange : platform::kKeyRead) | viewFlag();
    std::u16string copy(path);  // `path` may be this object's own
    if (platform::openKey(rootHandle(root), copy, 0, access, handle_) != platform::kSuccess)
        return false;
    state_ = forChange ? KeyAccessState::ReadWrite : KeyAccessState::ReadOnly;
    root_ = root;
    path_ = std::move(copy);
    return true;
}

void RegistryKey::close() noexcept {
    handle_.reset();
    state_ = KeyAccessState::Closed;
    root_ = RegistryRoot::None;
    path_.clear();
}

void RegistryKey::setView(RegistryView view) {
    if (view == view_)
        return;
    close();
    view_ = view;
}

std::optional<StoredValue> RegistryKey::tryRead(const std::u16string& name, void* buffer,
                                                std::uint32_t capacity) const {
    if (state_ == KeyAccessState::Closed)
        return std::nullopt;
    std::uint32_t type = platform::kRegNone;
    std::uint32_t size = capacity;
    const platform::Status error = platform::queryValue(handle_.get(), name, &type, buffer, &size);
    if (error == platform::kErrorMoreData)
        return StoredValue{RegistryValueType::None, size};
    if (error != platform::kSuccess)
        return std::nullopt;
    return StoredValue{valueTypeOf(type), size};
}

bool RegistryKey::exists(RegistryRoot root, const std::u16string& path) const {
    checkPath(path);
    return opens(root, path, platform::kKeyRead | viewFlag());
}

bool RegistryKey::isWritable(RegistryRoot root, const std::u16string& path) const {
    checkPath(path);
    return opens(root, path, platform::kKeyWrite | viewFlag());
}

}  // namespace owlkit
