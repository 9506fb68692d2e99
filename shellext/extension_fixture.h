// For tests of the COM server: a module of the test's own, and objects as the shell gets them.
#pragma once

#include <utility>

#include "comserver/identifiers.h"
#include "platform/registry.h"
#include "shellext/class_factory.h"
#include "tests/host_fixture.h"

namespace nmshell {

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
    ExtensionTest() {
        approve(u"QuietOwl_NMark");
        platform::setModuleFileName(this, folder() + u"nmshell.dll");
        std::filesystem::create_directory("langs");
        makeFile("langs/all.lang.txt",
                 "KEY: A\nLANG: de\nTEXT: Eins\nLANG: en\nTEXT: One\nKEY: B\nTEXT: Two");
        module_.languageLoaded = true;
        module_.folder = u"C:\\App\\";
        module_.bitmaps.setModule(this);
    }
    ~ExtensionTest() override { EXPECT_EQ(module_.liveObjects, 0); }

    static void approve(std::u16string_view text) {
        const std::u16string path = u"HKEY_LOCAL_MACHINE\\" + std::u16string(kApprovalPath);
        platform::registry_control::putText(path, kFileSystemClassId, platform::kRegSz, text);
    }
    static void set(const char16_t* name, std::u16string_view text, std::uint32_t type = platform::kRegSz) {
        platform::registry_control::putText(u"HKEY_CURRENT_USER\\Software\\NMark Shell", name, type, text);
    }
    static void setFlag(const char16_t* name, bool on) {
        set(name, {on ? u"\1" : u"\0", 2}, platform::kRegDword);
    }

    Ref<IClassFactory> factory(SelectionKind kind) {
        const CLSID& clsid = kClasses[static_cast<int>(kind)];
        return made<IClassFactory>(
            [&](void** object) { return getClassObject(module_, clsid, IID_IClassFactory, object); });
    }
    static Ref<IContextMenu> create(const Ref<IClassFactory>& factory) {
        return made<IContextMenu>(
            [&](void** object) { return factory->CreateInstance(nullptr, IID_IContextMenu, object); });
    }
    // An object for `kind` that was given the dropped paths.
    Ref<IContextMenu> extension(SelectionKind kind, std::vector<platform::DropItem> items = {}) {
        Ref<IContextMenu> menu = create(factory(kind));
        EXPECT_EQ(initialize(menu, std::move(items)), module_.languageLoaded ? S_OK : E_FAIL);
        return menu;
    }
    static HRESULT initialize(const Ref<IContextMenu>& menu, std::vector<platform::DropItem> items = {}) {
        Drop drop(std::move(items));
        return query<IShellExtInit>(menu, IID_IShellExtInit)->Initialize(nullptr, &drop.data, nullptr);
    }
    // The number of identifiers used in an empty menu, which then has `shown_` items.
    HRESULT show(const Ref<IContextMenu>& menu, UINT flags = 0, UINT first = 7, UINT last = 8) {
        const platform::MenuHandle target = platform::createMenu();
        const auto used = menu->QueryContextMenu(static_cast<HMENU>(target.get()), 0, first, last, flags);
        shown_ = host::menu(target.get()).items.size();
        EXPECT_EQ(shown_ == 0, used == 0);
        return used;
    }
    static HRESULT invoke(const Ref<IContextMenu>& menu, UINT_PTR verb) {
        CMINVOKECOMMANDINFO info = {};
        info.lpVerb = reinterpret_cast<LPCSTR>(verb);
        return menu->InvokeCommand(&info);
    }
    static HRESULT help(const Ref<IContextMenu>& menu, UINT_PTR id, char16_t* text, UINT size) {
        return menu->GetCommandString(id, GCS_HELPTEXTW, nullptr, reinterpret_cast<CHAR*>(text), size);
    }

    Module module_;
    std::size_t shown_ = 0;
};

}  // namespace nmshell
