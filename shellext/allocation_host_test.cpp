// Every allocation of every COM method fails once: what is promised for that case, nothing leaked, and the
// same call works afterwards.
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <new>

#include "shellext/exports.h"
#include "shellext/extension_fixture.h"

namespace {

std::uint32_t allocationsLeft = 0;  // until one fails; 0: none does

void* allocate(std::size_t size) {
    if (allocationsLeft != 0 && --allocationsLeft == 0)
        return nullptr;
    return std::malloc(size != 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size) {
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace nmshell {
namespace {

class AllocationTest : public ExtensionTest {
  protected:
    AllocationTest() {
        platform::setModuleFileName(this, folder() + u"nmshell.dll");
        makeFile("langs/en.lang.txt",
                 "KEY: CXT_MENU_HELP_AND_MORE\nLANG: en\nTEXT: a text that no small buffer holds\n");
        setLanguage(u"a language name that is long");
    }

    // `call` with the n-th allocation failing, for every n that there is; it must give `failure` then, and
    // S_OK or a success in the end.
    void walk(const char* name, HRESULT failure, const std::function<HRESULT()>& call) {
        for (std::uint32_t n = 1;; ++n) {
            SCOPED_TRACE(name + std::string(" ") + std::to_string(n));
            const std::int32_t objects = module_.liveObjects;
            allocationsLeft = n;
            const HRESULT result = call();
            const bool failed = std::exchange(allocationsLeft, 0) == 0;
            EXPECT_NE(module_.texts.state(), owlkit::interlang::State::Loading);
            if (!failed) {
                EXPECT_GE(result, 0);
                EXPECT_GT(n, 1u);
                return;
            }
            ASSERT_EQ(result, failure);
            EXPECT_EQ(module_.liveObjects, objects);
            EXPECT_EQ(platform::openFileCount(), 0);
            EXPECT_EQ(platform::registry_control::openHandles(), 0u);
        }
    }
};

TEST_F(AllocationTest, FailsAsPromisedInEveryMethod) {
    Ref<IClassFactory> made;
    walk("getClassObject", E_OUTOFMEMORY,
         [&] { return getClassObject(module_, kClasses[0], IID_IClassFactory, made.out()); });
    ASSERT_TRUE(made);
    Ref<IContextMenu> object;
    walk("CreateInstance", E_OUTOFMEMORY,
         [&] { return made->CreateInstance(nullptr, IID_IContextMenu, object.out()); });
    ASSERT_TRUE(object);
    Ref<IShellExtInit> init;
    object->QueryInterface(IID_IShellExtInit, init.out());
    Drop drop({{u"D:\\a path that is longer than short"}, {std::u16string(600, u'p')}});
    walk("Initialize", E_FAIL, [&] { return init->Initialize(nullptr, &drop.data, nullptr); });
    EXPECT_EQ(drop.data.references(), 0u);
    for (const SelectionKind kind : {SelectionKind::Files, SelectionKind::Drives, SelectionKind::RecycleBin})
        walk("QueryContextMenu", E_FAIL, [&] {
            const std::uint32_t walking = std::exchange(allocationsLeft, 0);
            const Ref<IContextMenu> fresh = extensionFor(kind, {{u"D:\\"}});
            const platform::MenuHandle menu = platform::createMenu();
            allocationsLeft = walking;
            return fresh->QueryContextMenu(static_cast<HMENU>(menu.get()), 0, 1, 100, CMF_NORMAL);
        });
    for (const UINT_PTR offset : {0, 1, 7, 10, 11})
        walk("InvokeCommand", E_FAIL, [&] { return invoke(object, offset); });
    char16_t help[100];
    walk("GetCommandString", E_FAIL, [&] {
        return object->GetCommandString(4, GCS_HELPTEXTW, nullptr, reinterpret_cast<CHAR*>(help), 100);
    });
    EXPECT_EQ(help, std::u16string_view(u"CXT_MENU_WIPE_ALL_TRASH"));
}

TEST_F(AllocationTest, FailsWhenTheModuleIsLoaded) {
    const HINSTANCE instance = reinterpret_cast<HINSTANCE>(this);
    walk("DllMain", FALSE - 1, [&] { return DllMain(instance, DLL_PROCESS_ATTACH, nullptr) - 1; });
    Ref<IClassFactory> made;
    EXPECT_EQ(DllGetClassObject(kClasses[0], IID_IClassFactory, made.out()), S_OK);
}

}  // namespace
}  // namespace nmshell
