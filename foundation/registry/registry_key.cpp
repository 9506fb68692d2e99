#include "foundation/registry/registry_key.h"

#include <utility>

#include "foundation/errors.h"

namespace owlkit {
namespace {

using platform::RegistryHandle;

constexpr std::size_t kPathLimit = 255;   // a path is shorter than this
constexpr std::uint32_t kNameRoom = 255;  // of the buffer that names are listed into, NUL included

constexpr std::uint32_t kOpenForChange =
    platform::kKeyRead | platform::kKeySetValue | platform::kKeyCreateSubKey;

void* rootHandle(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::ClassesRoot:
            return platform::predefinedKey(platform::kHkeyClassesRoot);
        case RegistryRoot::CurrentUser:
            return platform::predefinedKey(platform::kHkeyCurrentUser);
        case RegistryRoot::LocalMachine:
            return platform::predefinedKey(platform::kHkeyLocalMachine);
        case RegistryRoot::Users:
            return platform::predefinedKey(platform::kHkeyUsers);
        case RegistryRoot::CurrentConfig:
            return platform::predefinedKey(platform::kHkeyCurrentConfig);
        default:
            return nullptr;
    }
}

void checkPath(const std::u16string& path) {
    if (path.size() >= kPathLimit)
        throwInvalidArgument();
}

bool opens(RegistryRoot root, const std::u16string& path, std::uint32_t access) {
    RegistryHandle handle;
    return platform::openKey(rootHandle(root), path, 0, access, handle) == platform::kSuccess;
}

// The name at a valid index; `enumerate` is one of the platform's two calls.
template <class Enumerate>
std::u16string nameAt(Enumerate enumerate, const RegistryHandle& handle, std::int32_t index,
                      std::int32_t count) {
    if (index < 0 || index >= count)
        throwInvalidIndex();
    char16_t name[kNameRoom] = {};
    std::uint32_t length = kNameRoom;
    if (enumerate(handle.get(), static_cast<std::uint32_t>(index), name, length) != platform::kSuccess)
        throwFailed();
    if (length > 0 && name[length - 1] == u'\0')
        --length;
    return std::u16string(name, length);
}

}  // namespace

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
        default:
            return 0;
    }
}

void RegistryKey::requireOpen() const {
    if (state_ == KeyAccessState::Closed)
        throwInvalidState();
}

void RegistryKey::requireWritable() const {
    if (state_ == KeyAccessState::ReadOnly)
        throwReadOnly();
    if (state_ != KeyAccessState::ReadWrite)
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

bool RegistryKey::exists(RegistryRoot root, const std::u16string& path) const {
    checkPath(path);
    return opens(root, path, platform::kKeyRead | viewFlag());
}

bool RegistryKey::isWritable(RegistryRoot root, const std::u16string& path) const {
    checkPath(path);
    return opens(root, path, platform::kKeyWrite | viewFlag());
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

std::int32_t RegistryKey::subkeyCount() const {
    requireOpen();
    std::uint32_t count = 0;
    if (platform::queryInfoKey(handle_.get(), &count, nullptr) != platform::kSuccess)
        throwFailed();
    return static_cast<std::int32_t>(count);
}

std::int32_t RegistryKey::valueCount() const {
    requireOpen();
    std::uint32_t count = 0;
    if (platform::queryInfoKey(handle_.get(), nullptr, &count) != platform::kSuccess || count >= 0x80000000)
        throwFailed();
    return static_cast<std::int32_t>(count);
}

std::u16string RegistryKey::subkeyName(std::int32_t index) const {
    return nameAt(platform::enumKey, handle_, index, subkeyCount());
}

std::u16string RegistryKey::valueName(std::int32_t index) const {
    return nameAt(platform::enumValue, handle_, index, valueCount());
}

std::u16string RegistryKey::rootName(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::ClassesRoot:
            return u"HKEY_CLASSES_ROOT";
        case RegistryRoot::CurrentUser:
            return u"HKEY_CURRENT_USER";
        case RegistryRoot::LocalMachine:
            return u"HKEY_LOCAL_MACHINE";
        case RegistryRoot::Users:
            return u"HKEY_USERS";
        case RegistryRoot::CurrentConfig:
            return u"HKKEY_CURRENT_CONFIG";  // the doubled K is deliberate
        default:
            return {};
    }
}

}  // namespace owlkit
