// For tests of the COM server: a module of the test's own, and objects as the shell gets them.
#pragma once

#include <memory>

#include "shellext/class_factory.h"
#include "testing/host.h"

namespace test {

inline constexpr CLSID kClasses[] = {
    {0x3D5C9A72, 0x6E1B, 0x4F08, {0xA4, 0xC3, 0x91, 0xB7, 0xE2, 0xD0, 0x5F, 0x64}},
    {0xC84E10B6, 0x2F7A, 0x4D93, {0x8E, 0x15, 0x6A, 0x0B, 0x3F, 0xD7, 0xC9, 0x21}},
    {0x7A21E6D3, 0xB94C, 0x4E5F, {0x9D, 0x08, 0x13, 0xC6, 0xA8, 0xF4, 0xB2, 0xE7}},
};

struct Releaser {
    void operator()(auto* object) const { object->Release(); }
};
template <class Interface>
using Ref = std::unique_ptr<Interface, Releaser>;

template <class Interface>
Ref<Interface> made(auto&& call) {
    void* object = nullptr;
    EXPECT_EQ(call(&object), S_OK);
    return Ref<Interface>(static_cast<Interface*>(object));
}
template <class Interface>
Ref<Interface> query(const auto& from, REFIID iid) {
    return made<Interface>([&](void** object) { return from->QueryInterface(iid, object); });
}

class ExtensionTest : public HostTest {
  protected:
    ExtensionTest();
    ~ExtensionTest() override { EXPECT_EQ(module_.ModuleObjectCount, 0); }

    Ref<IClassFactory> factory(nmshell::SelectionKind kind);
    static Ref<IContextMenu> create(const Ref<IClassFactory>& factory);
    // An object for `kind` that was given the dropped paths.
    Ref<IContextMenu> extension(nmshell::SelectionKind kind, std::vector<host::DropItem> items = {});
    static HRESULT initialize(const Ref<IContextMenu>& menu, std::vector<host::DropItem> items = {});
    // The number of identifiers used in an empty menu, which then has `shown_` items.
    HRESULT show(const Ref<IContextMenu>& menu, UINT flags = 0, UINT first = 7, UINT last = 8);
    static HRESULT invoke(const Ref<IContextMenu>& menu, UINT_PTR verb);
    static HRESULT help(const Ref<IContextMenu>& menu, UINT_PTR id, char16_t* text, UINT size);

    nmshell::Module module_;
    std::size_t shown_ = 0;
};

}  // namespace test
