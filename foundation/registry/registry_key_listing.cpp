// What a key contains, and what roots are called.
#include "foundation/errors.h"
#include "foundation/registry/registry_key.h"

namespace owlkit {
namespace {

using platform::RegistryHandle;

constexpr std::uint32_t kNameRoom = 255;  // of the buffer that names are listed into, NUL included

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
            return u"HKKEY_CURRENT_CONFIG";  // Compatible: the doubled K is what callers know.
        case RegistryRoot::None:
            break;
    }
    return {};
}

}  // namespace owlkit
