// For tests of the COM server: a module of the test's own, the registry it reads, and objects as the shell
// gets them.
#pragma once

#include <string>
#include <utility>

#include "platform/com.h"
#include "platform/registry.h"
#include "shellext/class_factory.h"
#include "shellext/identifiers.h"
#include "tests/host_fixture.h"

namespace nmshell {

inline constexpr CLSID kClasses[] = {
    {0x3D5C9A72, 0x6E1B, 0x4F08, {0xA4, 0xC3, 0x91, 0xB7, 0xE2, 0xD0, 0x5F, 0x64}},
    {0xC84E10B6, 0x2F7A, 0x4D93, {0x8E, 0x15, 0x6A, 0x0B, 0x3F, 0xD7, 0xC9, 0x21}},
    {0x7A21E6D3, 0xB94C, 0x4E5F, {0x9D, 0x08, 0x13, 0xC6, 0xA8, 0xF4, 0xB2, 0xE7}},
};

// One reference to a COM object.
template <class Interface>
class Ref {
  public:
    Ref() = default;
    Ref(Ref&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    Ref(const Ref&) = delete;
    ~Ref() { reset(); }
    void reset() {
        if (Interface* const old = std::exchange(pointer_, nullptr))
            old->Release();
    }
    void** out() { return reinterpret_cast<void**>(&pointer_); }
    Interface* get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }

  private:
    Interface* pointer_ = nullptr;
};

class ExtensionTest : public HostTest {
  protected:
    ExtensionTest() {
        approve();
        module_.languageLoaded = true;
        module_.folder = u"C:\\App\\";
    }
    ~ExtensionTest() override { EXPECT_EQ(module_.liveObjects, 0); }

    static void approve(std::u16string_view name = u"QuietOwl_NMark") {
        platform::registry_control::putText(u"HKEY_LOCAL_MACHINE\\" + std::u16string(kApprovalPath),
                                            kFileSystemClassId, platform::kRegSz, name);
    }
    static void setFlag(std::u16string_view name, char value) {
        platform::registry_control::putValue(u"HKEY_CURRENT_USER\\Software\\NMark Shell", name,
                                             platform::kRegDword, std::string{value, 0, 0, 0});
    }
    static void setLanguage(std::u16string_view language) {
        platform::registry_control::putText(u"HKEY_CURRENT_USER\\Software\\NMark Shell", u"Language",
                                            platform::kRegSz, language);
    }

    Ref<IClassFactory> factory(SelectionKind kind) {
        Ref<IClassFactory> result;
        EXPECT_EQ(getClassObject(module_, kClasses[static_cast<int>(kind)], IID_IClassFactory, result.out()),
                  S_OK);
        return result;
    }
    Ref<IContextMenu> extension(SelectionKind kind) {
        Ref<IContextMenu> result;
        EXPECT_EQ(factory(kind)->CreateInstance(nullptr, IID_IContextMenu, result.out()), S_OK);
        return result;
    }
    // An object that was given the dropped paths.
    Ref<IContextMenu> extensionFor(SelectionKind kind, std::vector<platform::DropItem> items) {
        Ref<IContextMenu> result = extension(kind);
        EXPECT_EQ(initialize(result, std::move(items)), S_OK);
        return result;
    }
    static HRESULT initialize(const Ref<IContextMenu>& extension, std::vector<platform::DropItem> items) {
        Drop drop(std::move(items));
        Ref<IShellExtInit> init;
        EXPECT_EQ(extension->QueryInterface(IID_IShellExtInit, init.out()), S_OK);
        return init->Initialize(nullptr, &drop.data, nullptr);
    }
    // The result of QueryContextMenu on an empty menu, and how many items it then holds.
    static std::pair<HRESULT, std::size_t> show(const Ref<IContextMenu>& extension, UINT flags = CMF_NORMAL,
                                                UINT first = 1000, UINT last = 2000) {
        const platform::MenuHandle menu = platform::createMenu();
        const HRESULT result =
            extension->QueryContextMenu(static_cast<HMENU>(menu.get()), 0, first, last, flags);
        return {result, host::menu(menu.get()).items.size()};
    }
    static HRESULT invoke(const Ref<IContextMenu>& extension, UINT_PTR verb) {
        CMINVOKECOMMANDINFO info = {};
        info.lpVerb = reinterpret_cast<LPCSTR>(verb);
        return extension->InvokeCommand(&info);
    }
    static std::u16string help(const Ref<IContextMenu>& extension, UINT_PTR id) {
        char16_t buffer[100] = u"";
        const HRESULT result =
            extension->GetCommandString(id, GCS_HELPTEXTW, nullptr, reinterpret_cast<CHAR*>(buffer), 100);
        return result == S_OK ? buffer : u"(failed)";
    }

    Module module_;
};

}  // namespace nmshell
