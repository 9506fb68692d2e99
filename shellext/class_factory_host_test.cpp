#include "shellext/class_factory.h"

#include "shellext/exports.h"
#include "shellext/extension_fixture.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace nmshell {
namespace {

class ClassFactoryTest : public ExtensionTest {};

TEST_F(ClassFactoryTest, ServesThreeClassesWhileEnabled) {
    const CLSID unknown = {0x3D5C9A72, 0x6E1B, 0x4F08, {0xA4, 0xC3, 0x91, 0xB7, 0xE2, 0xD0, 0x5F, 0x65}};
    const auto ask = [&](const CLSID& clsid) {
        Ref<IUnknown> object;
        *object.out() = this;
        const HRESULT result = getClassObject(module_, clsid, IID_IUnknown, object.out());
        EXPECT_EQ(static_cast<bool>(object), result == S_OK);
        EXPECT_EQ(module_.liveObjects, result == S_OK ? 1 : 0);
        return result;
    };
    for (const CLSID& clsid : kClasses) {
        approve();
        setFlag(u"Enabled", 1);
        EXPECT_EQ(ask(clsid), S_OK);
        setFlag(u"Enabled", 0);
        EXPECT_EQ(ask(clsid), CLASS_E_CLASSNOTAVAILABLE);
        setFlag(u"Enabled", 1);
        approve(u"QuietOwl_NMark ");
        EXPECT_EQ(ask(clsid), CLASS_E_CLASSNOTAVAILABLE);
    }
    approve();
    EXPECT_EQ(ask(unknown), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(getClassObject(module_, kClasses[0], IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ClassFactoryTest, SurvivesAFailingRegistry) {
    for (std::uint32_t n = 1;; ++n) {
        SCOPED_TRACE(n);
        Ref<IClassFactory> object;
        fault::arm("Reg*", n, platform::kErrorAccessDenied);
        const HRESULT result = getClassObject(module_, kClasses[0], IID_IClassFactory, object.out());
        EXPECT_EQ(static_cast<bool>(object), result == S_OK);
        EXPECT_TRUE(result == S_OK || (result == CLASS_E_CLASSNOTAVAILABLE && fault::fired()));
        if (!fault::fired())
            break;
    }
    fault::disarm();
    fault::resetCounts();
    factory(SelectionKind::Files);
    EXPECT_EQ(fault::calls("RegOpenKeyExW"), 2u);
}

TEST_F(ClassFactoryTest, CountsReferencesAndMakesObjects) {
    Ref<IClassFactory> made = factory(SelectionKind::Drives);
    EXPECT_EQ(made->AddRef(), 2u);
    EXPECT_EQ(made->Release(), 1u);
    Ref<IUnknown> same;
    EXPECT_EQ(made->QueryInterface(IID_IUnknown, same.out()), S_OK);
    EXPECT_EQ(same.get(), made.get());
    void* other = this;
    EXPECT_EQ(made->QueryInterface(IID_IContextMenu, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
    other = this;
    EXPECT_EQ(made->CreateInstance(made.get(), IID_IUnknown, &other), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(other, nullptr);
    other = this;
    EXPECT_EQ(made->CreateInstance(nullptr, IID_IClassFactory, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(module_.liveObjects, 1);
    Ref<IUnknown> object;
    EXPECT_EQ(made->CreateInstance(nullptr, IID_IUnknown, object.out()), S_OK);
    EXPECT_EQ(module_.liveObjects, 2);
    EXPECT_EQ(made->LockServer(TRUE), S_OK);
    same.reset();
    made.reset();
    EXPECT_EQ(module_.liveObjects, 1);
}

TEST_F(ClassFactoryTest, StaysAliveWithoutTheInterfaceAskedFor) {
    void* object = this;
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler expectedLeak;
#endif
    EXPECT_EQ(getClassObject(module_, kClasses[0], IID_IShellExtInit, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(std::exchange(module_.liveObjects, 0), 1);
}

class LanguageTest : public ExtensionTest {
  protected:
    LanguageTest() {
        platform::setModuleFileName(this, folder() + u"nmshell.dll");
        makeFile("langs/all.lang.txt",
                 "KEY: CXT_MENU_STANDALONE\nLANG: de\nTEXT: Starten\nLANG: en\nTEXT: Start\n"
                 "KEY: CXT_MENU_HELP\nTEXT: Help\n");
        module_.languageLoaded = false;
    }
    void clearTexts() {
        module_.texts.BeginLoad();
        module_.texts.Clear();
        module_.texts.EndLoad();
    }
};

TEST_F(LanguageTest, FollowsTheSettingWithTheNextClassObject) {
    const struct {
        const char* name;
        const char16_t* setting;
        const char16_t* start;  // after loading
        const char16_t* later;
        const char16_t* startThen;  // after a class object
        const char16_t* helpThen;
    } kCases[] = {
        {"chosen", u"de", u"Starten", u"de", u"Starten", u"CXT_MENU_HELP"},
        {"changed", u" de ", u"Starten", u"en", u"Start", u"Help"},
        {"the system's", u"", u"Start", u"", u"Start", u"Help"},
        {"without a file", u"fr", u"Start", u"fr", u"Starten", u"CXT_MENU_HELP"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        clearTexts();
        setLanguage(c.setting);
        module_.attach(this);
        EXPECT_TRUE(module_.languageLoaded);
        EXPECT_EQ(module_.texts.GetText(u"CXT_MENU_STANDALONE"), c.start);
        EXPECT_EQ(module_.texts.GetText(u"CXT_MENU_HELP"),
                  u"Help");  // from the primary language where needed
        setLanguage(c.later);
        const Ref<IContextMenu> object = extension(SelectionKind::Files);
        EXPECT_EQ(help(object, 7), c.startThen);
        EXPECT_EQ(help(object, 10), c.helpThen);
    }
}

TEST_F(LanguageTest, IsLoadedOnlyWhileEnabledAndWithoutError) {
    setFlag(u"Enabled", 0);
    module_.attach(this);
    EXPECT_FALSE(module_.languageLoaded);
    EXPECT_EQ(fault::calls("FindFirstFileW"), 0u);
    setFlag(u"Enabled", 1);
    module_.attach(this);
    EXPECT_TRUE(module_.languageLoaded);
    show(extensionFor(SelectionKind::Files, {{u"a"}}));
    EXPECT_NE(host::userInterface().liveBitmaps, 0);
    setFlag(u"Enabled", 0);
    module_.detach();
    EXPECT_TRUE(module_.languageLoaded);
    setFlag(u"Enabled", 1);
    module_.detach();
    EXPECT_FALSE(module_.languageLoaded);
    EXPECT_EQ(host::userInterface().liveBitmaps, 0);
    makeFile("langs/bad.lang.txt", "TEXT: before any key\n");
    module_.attach(this);
    EXPECT_FALSE(module_.languageLoaded);
    EXPECT_EQ(module_.texts.GetText(u"CXT_MENU_STANDALONE"), u"Start");
    std::filesystem::remove_all("langs");
    clearTexts();
    module_.attach(this);
    EXPECT_FALSE(module_.languageLoaded);
}

TEST_F(LanguageTest, IsServedThroughTheExports) {
    const HINSTANCE instance = reinterpret_cast<HINSTANCE>(this);
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
    EXPECT_EQ(DllMain(instance, DLL_THREAD_ATTACH, nullptr), TRUE);
    EXPECT_EQ(fault::calls("Reg*"), 0u);
    EXPECT_EQ(DllMain(instance, DLL_PROCESS_ATTACH, nullptr), TRUE);
    Ref<IClassFactory> made;
    EXPECT_EQ(DllGetClassObject(kClasses[0], IID_IClassFactory, made.out()), S_OK);
    Ref<IContextMenu> object;
    EXPECT_EQ(made->CreateInstance(nullptr, IID_IContextMenu, object.out()), S_OK);
    made.reset();
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    EXPECT_EQ(initialize(object, {{u"a"}}), S_OK);
    EXPECT_EQ(help(object, 10), u"Help");
    EXPECT_EQ(invoke(object, 7), S_OK);
    EXPECT_EQ(platform::shellStarts().at(0).file, folder() + u"nmark.exe");
    object.reset();
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
    EXPECT_EQ(DllMain(instance, DLL_PROCESS_DETACH, nullptr), TRUE);
}

}  // namespace
}  // namespace nmshell
