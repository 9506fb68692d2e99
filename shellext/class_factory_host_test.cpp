#include "shellext/class_factory.h"

#include "platform/locale.h"
#include "shellext/exports.h"
#include "testing/extension.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace nmshell {
namespace {

using namespace test;

class ClassFactoryTest : public ExtensionTest {
  protected:
    HRESULT ask(const CLSID& clsid) {
        void* object = this;
        const HRESULT result = getClassObject(module_, clsid, IID_IUnknown, &object);
        const Ref<IUnknown> held(static_cast<IUnknown*>(object));
        EXPECT_TRUE((held != nullptr) == (result == S_OK));
        EXPECT_EQ(module_.ModuleObjectCount, held ? 1 : 0);
        return result;
    }
};

TEST_F(ClassFactoryTest, ServesThreeClassesWhileEnabled) {
    for (CLSID clsid : kClasses) {
        EXPECT_EQ(ask(clsid), S_OK);
        for (const bool enabled : {false, true}) {
            setFlag(u"Enabled", enabled);
            approve(enabled ? u"QuietOwl_NMark " : u"QuietOwl_NMark");
            EXPECT_EQ(ask(clsid), CLASS_E_CLASSNOTAVAILABLE);
        }
        approve(u"QuietOwl_NMark");
        ++clsid.Data4[7];
        EXPECT_EQ(ask(clsid), CLASS_E_CLASSNOTAVAILABLE);
    }
    fault::resetCounts();
    ask(kClasses[0]);
    EXPECT_EQ(fault::calls("RegOpenKeyExW"), 2u);  // approval and settings, each once
}

TEST_F(ClassFactoryTest, CountsReferencesAndMakesObjects) {
    const Ref<IClassFactory> held = factory(SelectionKind::Drives);
    EXPECT_EQ(held->AddRef(), 2u);
    EXPECT_EQ(held->Release(), 1u);
    EXPECT_EQ(query<IUnknown>(held, IID_IUnknown).get(), held.get());
    void* none[] = {this, this, this, this};
    EXPECT_EQ(held->QueryInterface(IID_IContextMenu, &none[0]), E_NOINTERFACE);
    EXPECT_EQ(held->CreateInstance(held.get(), IID_IUnknown, &none[1]), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(held->CreateInstance(nullptr, IID_IClassFactory, &none[2]), E_NOINTERFACE);
    const Ref<IContextMenu> menu = create(held);
    EXPECT_EQ(held->LockServer(TRUE), S_OK);
    EXPECT_EQ(module_.ModuleObjectCount, 2);
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler expected;  // a factory without the interface asked for stays alive
#endif
    EXPECT_EQ(getClassObject(module_, kClasses[0], IID_IShellExtInit, &none[3]), E_NOINTERFACE);
    EXPECT_EQ(module_.ModuleObjectCount--, 3);
    for (const void* object : none)
        EXPECT_EQ(object, nullptr);
}

TEST_F(ClassFactoryTest, TellsWhatIsNoLackOfMemoryAsAFailure) {
    set(u"Language", u"de");
    module_.texts.BeginLoad();
    EXPECT_EQ(ask(kClasses[0]), E_FAIL);
    module_.texts.EndLoad();
    EXPECT_EQ(ask(kClasses[0]), S_OK);
}

using LanguageTest = ExtensionTest;

TEST_F(LanguageTest, FollowsTheSettingWithTheNextClassObject) {
    // The setting and a text after loading; the setting and two texts after a class object.
    const char16_t* const kCases[][5] = {
        {u"de", u"Eins", u"de", u"Eins", u"B"},
        {u" de ", u"Eins", u"en", u"One", u"Two"},
        {u"", u"One", u"", u"One", u"Two"},
        {u"fr", u"One", u"fr", u"Eins", u"B"},
    };
    const owlkit::interlang& texts = module_.texts;
    for (const auto& c : kCases) {
        set(u"Language", c[0]);
        module_.attach(host::moduleAt(this));
        EXPECT_EQ(texts.GetText(u"A"), c[1]);
        EXPECT_EQ(texts.GetText(u"B"), u"Two");  // from the primary language where needed
        set(u"Language", c[2]);
        factory(SelectionKind::Files);
        EXPECT_EQ(texts.GetText(u"A"), c[3]);
        EXPECT_EQ(texts.GetText(u"B"), c[4]);
    }
    set(u"Language", u"");
    for (const char16_t* const system : {u"en", u"de", u"de"}) {
        host::setLocaleInfo(platform::kLocaleIso639LanguageName, system);
        factory(SelectionKind::Files);
        EXPECT_EQ(texts.GetText(u"A"), *system == u'e' ? u"One" : u"Eins");
    }
}

TEST_F(LanguageTest, TakesNoFilesOfTheCurrentFolder) {
    module_.attach(host::moduleAt(this));
    EXPECT_TRUE(module_.languageLoaded);
    fault::arm("GetModuleFileNameW", 1, platform::kErrorAccessDenied);
    module_.attach(host::moduleAt(this));
    EXPECT_FALSE(module_.languageLoaded);
}

TEST_F(LanguageTest, IsServedThroughTheExports) {
    const auto enter = [&](DWORD reason, bool enabled = true) {
        setFlag(u"Enabled", enabled);
        EXPECT_EQ(DllMain(reinterpret_cast<HINSTANCE>(this), reason, nullptr), TRUE);
        setFlag(u"Enabled", true);
        Ref<IContextMenu> menu = create(made<IClassFactory>(
            [](void** object) { return DllGetClassObject(kClasses[0], IID_IClassFactory, object); }));
        EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
        return menu;
    };
    for (const DWORD reason : {DLL_PROCESS_DETACH, DLL_THREAD_ATTACH})
        EXPECT_EQ(initialize(enter(reason)), E_FAIL);
    EXPECT_EQ(initialize(enter(DLL_PROCESS_ATTACH, false)), E_FAIL);
    EXPECT_EQ(initialize(enter(DLL_PROCESS_ATTACH)), S_OK);
    Ref<IContextMenu> menu = enter(DLL_PROCESS_DETACH, false);
    EXPECT_EQ(initialize(menu, {{u"a"}}), S_OK);
    EXPECT_EQ(show(menu), 15);
    EXPECT_TRUE(host::userInterface().liveBitmaps != 0);
    EXPECT_EQ(invoke(menu, 7), S_OK);
    EXPECT_EQ(lastStart(), u"open|" + folder() + u"nmark.exe|-cent ZAAAAMgAAAA=");
    menu.reset();
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
    EXPECT_EQ(initialize(enter(DLL_PROCESS_DETACH)), E_FAIL);
    EXPECT_EQ(host::userInterface().liveBitmaps, 0);
    EXPECT_EQ(initialize(enter(DLL_PROCESS_ATTACH)), S_OK);
    fault::resetCounts();
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_DETACH, this), TRUE);
    EXPECT_EQ(fault::calls("*"), 0u) << "the process ends";
    EXPECT_EQ(initialize(enter(DLL_THREAD_ATTACH)), S_OK);
    makeFile("langs/bad.lang.txt", "TEXT: before any key\n");
    EXPECT_EQ(initialize(enter(DLL_PROCESS_ATTACH)), E_FAIL);
}

}  // namespace
}  // namespace nmshell
