#include "testing/extension.h"

namespace test {

ExtensionTest::ExtensionTest() {
    approve();
    host::setModuleFileName(host::moduleAt(this), folder() + u"nmshell.dll");
    std::filesystem::create_directory("langs");
    makeFile("langs/all.lang.txt", "KEY: A\nLANG: de\nTEXT: Eins\nLANG: en\nTEXT: One\nKEY: B\nTEXT: Two");
    module_.languageLoaded = true;
    module_.folder = u"C:\\App\\";
    module_.bitmaps.setModule(host::moduleAt(this));
}

Ref<IClassFactory> ExtensionTest::factory(nmshell::SelectionKind kind) {
    const CLSID& clsid = kClasses[static_cast<int>(kind)];
    return made<IClassFactory>(
        [&](void** object) { return nmshell::getClassObject(module_, clsid, IID_IClassFactory, object); });
}

Ref<IContextMenu> ExtensionTest::create(const Ref<IClassFactory>& factory) {
    return made<IContextMenu>(
        [&](void** object) { return factory->CreateInstance(nullptr, IID_IContextMenu, object); });
}

Ref<IContextMenu> ExtensionTest::extension(nmshell::SelectionKind kind, std::vector<host::DropItem> items) {
    Ref<IContextMenu> menu = create(factory(kind));
    EXPECT_EQ(initialize(menu, std::move(items)), module_.languageLoaded ? S_OK : E_FAIL);
    return menu;
}

HRESULT ExtensionTest::initialize(const Ref<IContextMenu>& menu, std::vector<host::DropItem> items) {
    Drop drop(std::move(items));
    return query<IShellExtInit>(menu, IID_IShellExtInit)->Initialize(nullptr, &drop.data, nullptr);
}

HRESULT ExtensionTest::show(const Ref<IContextMenu>& menu, UINT flags, UINT first, UINT last) {
    const platform::MenuHandle target = platform::createMenu();
    const auto used = menu->QueryContextMenu(static_cast<HMENU>(target.get()), 0, first, last, flags);
    shown_ = host::menu(target.get()).items.size();
    EXPECT_EQ(shown_ == 0, used == 0);
    return used;
}

HRESULT ExtensionTest::invoke(const Ref<IContextMenu>& menu, UINT_PTR verb) {
    CMINVOKECOMMANDINFO info = {};
    info.lpVerb = reinterpret_cast<LPCSTR>(verb);
    return menu->InvokeCommand(&info);
}

HRESULT ExtensionTest::help(const Ref<IContextMenu>& menu, UINT_PTR id, char16_t* text, UINT size) {
    return menu->GetCommandString(id, GCS_HELPTEXTW, nullptr, reinterpret_cast<CHAR*>(text), size);
}

}  // namespace test
