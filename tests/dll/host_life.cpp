// A shell that lives on: it loads the extension for a right-click, lets it go again, and does so thousands of
// times. Run where the extension is registered.
#include "testing/host_life_win32.h"

#include <future>
#include <thread>
#include <vector>

#include "testing/imports_win32.h"

namespace dll_tests {
namespace {

constexpr int kLoads = 2000;
constexpr DWORD kCommands = 15;

struct Click {
    const char16_t* classId;
    std::vector<std::u16string> paths;
    std::vector<WORD> choices;
};
const Click kClicks[] = {
    {nmshell::kFileSystemClassId.data(), {u"C:\\windows", u"C:\\windows\\win.ini"}, {7}},
    {nmshell::kDriveClassId.data(), {u"C:\\"}, {7}},
    {nmshell::kRecycleBinClassId.data(), {}, {7}},
};
// With all that a choice may ask of the system: a file for a long selection, a page, the rights of the user.
const Click kThoroughClicks[] = {
    {nmshell::kFileSystemClassId.data(), std::vector<std::u16string>(60, std::u16string(60, u'n')), {0, 10}},
    {nmshell::kFileSystemClassId.data(), {u"C:\\" + std::u16string(300, u'n')}, {9}},
    {nmshell::kDriveClassId.data(), {u"C:\\"}, {1, 3}},
    {nmshell::kRecycleBinClassId.data(), {}, {4, 7}},
};

CLSID classOf(const Click& click) {
    CLSID result = {};
    EXPECT_EQ(CLSIDFromString(reinterpret_cast<const wchar_t*>(click.classId), &result), S_OK);
    return result;
}

// All that a shell does with a new object; answers the number of commands in the menu.
DWORD useMenu(const Click& click, const ComPointer<IShellExtInit>& object) {
    const ComPointer<IDataObject> data = rightclick::makeDropObject(click.paths);
    ComPointer<IContextMenu> menu;
    if (FAILED(object.get()->Initialize(nullptr, data.get(), nullptr)) ||
        FAILED(object.get()->QueryInterface(IID_IContextMenu, receive(menu))))
        return 0;
    const HMENU popup = CreatePopupMenu();
    const HRESULT added = menu.get()->QueryContextMenu(popup, 0, 1, 0x7FFF, CMF_NORMAL);
    wchar_t help[200] = {};
    menu.get()->GetCommandString(0, GCS_HELPTEXTW, nullptr, reinterpret_cast<char*>(help), 200);
    CMINVOKECOMMANDINFO command = {};
    command.cbSize = sizeof command;
    for (const WORD choice : click.choices) {
        command.lpVerb = MAKEINTRESOURCEA(choice);
        menu.get()->InvokeCommand(&command);
    }
    DestroyMenu(popup);
    return SUCCEEDED(added) ? HRESULT_CODE(added) : 0;
}

// A right-click as COM brings it about, the module loaded before and unloaded after.
DWORD rightClick(const Click& click) {
    DWORD commands = 0;
    {
        ComPointer<IShellExtInit> object;
        CoCreateInstance(classOf(click), nullptr, CLSCTX_INPROC_SERVER, IID_IShellExtInit, receive(object));
        if (object) {
            observe(GetModuleHandleW(kModule));
            commands = useMenu(click, object);
        }
    }
    CoFreeUnusedLibraries();
    return commands;
}

// The whole life of a module, attached while `name` fails for the n-th time.
class Life {
  public:
    Life(const char* name, int n, bool forGood) : module_(kModule) {
        observe(module_.get());
        makeCallsFailing(module_.get());
        faults.arm(name, n, forGood);
        attached_ = module_.enter(DLL_PROCESS_ATTACH);
    }
    ~Life() {
        if (attached_)
            module_.enter(DLL_PROCESS_DETACH);
        faults.disarm();
    }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    // The end of the process: nothing more is called.
    void endProcess() {
        attached_ = false;
        module_.enter(DLL_PROCESS_DETACH, &module_);
    }

    HRESULT getFactory(const Click& click, ComPointer<IClassFactory>& factory) const {
        const auto get = module_.exported<decltype(&DllGetClassObject)>("DllGetClassObject");
        return attached_ ? get(classOf(click), IID_IClassFactory, receive(factory)) : E_FAIL;
    }

  private:
    UnenteredModule module_;
    bool attached_;
};

void failingLife(const Click& click, const char* name, int n, bool forGood) {
    const Life life(name, n, forGood);
    ComPointer<IClassFactory> factory;
    ComPointer<IShellExtInit> object;
    life.getFactory(click, factory);
    if (factory)
        factory.get()->CreateInstance(nullptr, IID_IShellExtInit, receive(object));
    if (object)
        useMenu(click, object);
}

// Walks a failing call through a life: the first one, the second one ... until there is none left to fail. Of
// the thousands of allocations ever fewer are tried. Answers how many times it failed.
int walkFailures(const char* name) {
    const bool thousands = std::string_view(name) == "malloc";
    int failed = 0;
    for (const Click& click : kThoroughClicks)
        for (const bool forGood : {false, true})
            for (int n = 1; n == 1 || faults.fired; n += thousands ? 1 + n / 8 : 1) {
                failingLife(click, name, n, forGood);
                failed += faults.fired;
            }
    return failed;
}

TEST_F(HostLife, LosesNothingByRightClicks) {
    const std::string zero(4, '\0');
    int count = 0;
    expectNothingLost(kLoads, [&] {
        const bool damaged = count / 3 % 2 != 0;
        setSetting(L"Enabled", REG_DWORD, damaged ? zero.substr(2) : "\1" + zero.substr(1));
        setSetting(L"Icons", REG_DWORD, damaged ? zero + zero : "\1" + zero.substr(1));
        setSetting(L"Language", REG_SZ, damaged ? "d" : std::string("d\0e\0\0\0", 6));
        EXPECT_EQ(rightClick(kClicks[count++ % 3]), kCommands);
        EXPECT_EQ(GetModuleHandleW(kModule), nullptr);
    });
    EXPECT_EQ(faults.thrown, 0) << "exceptions stay off what happens every day";
    EXPECT_EQ(faults.launches, count);
}

TEST_F(HostLife, LosesNothingByFailures) {
    int thrown = 0;
    for (const FailingCall& call : failingCalls) {
        SCOPED_TRACE(call.name);
        int failed = 0;
        expectNothingLost(
            1, [&] { failed = walkFailures(call.name); }, 1);
        EXPECT_GT(failed, 0);
        std::cout << call.name << ": failed in " << failed << " lives\n";
        thrown += faults.thrown;
    }
    EXPECT_GT(thrown, 0);
}

// More threads than the module has a place for without asking for memory see an exception inside it, and end
// before or after it is unloaded.
TEST_F(HostLife, LosesNothingByThreads) {
    struct Case {
        const char* name;
        int threads;
        bool endFirst;
        bool noSlots;
    };
    const Case cases[] = {
        {"the threads end first", 100, true, false},
        {"the module goes first", 100, false, false},
        {"without slots for the threads", 60, true, true},
    };
    for (const auto& [name, count, endFirst, noSlots] : cases) {
        SCOPED_TRACE(name);
        expectNothingLost(
            5,
            [&] {
                std::vector<std::thread> threads;
                std::promise<void> end;
                const std::shared_future<void> mayEnd = end.get_future().share();
                const auto finish = [&] {
                    end.set_value();
                    for (std::thread& thread : threads)
                        thread.join();
                };
                {
                    const Life life("malloc", 0, false);
                    faults.noSlots = noSlots;
                    for (int i = 0; i < count; ++i) {
                        std::promise<void> seen;
                        threads.emplace_back([&, mayEnd] {
                            faults.arm("malloc", 1, false);
                            ComPointer<IClassFactory> factory;
                            EXPECT_TRUE(FAILED(life.getFactory(kClicks[0], factory)));
                            seen.set_value();
                            mayEnd.wait();
                        });
                        seen.get_future().wait();
                    }
                    if (endFirst)
                        finish();
                }
                if (!endFirst)
                    finish();
            },
            1);
        EXPECT_GE(faults.thrown, 5 * count);
    }
}

TEST_F(HostLife, LoadsWithoutASlot) {
    faults.noSlots = true;
    const Life life("none", 0, false);
    ComPointer<IClassFactory> factory;
    faults.thrown = 0;
    for (int i = 0; i < 3; ++i) {
        faults.arm("malloc", 1, false);
        EXPECT_TRUE(FAILED(life.getFactory(kClicks[0], factory)));
    }
    EXPECT_GE(faults.thrown, 3);
    EXPECT_EQ(life.getFactory(kClicks[0], factory), S_OK);
}

TEST_F(HostLife, LeavesEverythingAtTheEndOfTheProcess) {
    Life life("none", 0, false);
    ComPointer<IClassFactory> factory;
    EXPECT_EQ(life.getFactory(kClicks[0], factory), S_OK);
    factory = {};
    faults.freed = 0;
    life.endProcess();
    EXPECT_LE(faults.freed, 1) << "more than the startup code's own list";
}

// The figures that the other tests compare are no good if they do not see what is taken.
TEST_F(HostLife, SeesWhatIsTaken) {
    const Footprint before = Footprint::now();
    const DWORD slot = TlsAlloc();
    const DWORD fiberSlot = FlsAlloc(nullptr);
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const HBITMAP bitmap = CreateBitmap(16, 16, 1, 32, nullptr);
    const HMENU menu = CreateMenu();
    void* const block = HeapAlloc(GetProcessHeap(), 0, 100);
    const Footprint after = Footprint::now();
    EXPECT_EQ(after.freeSlots, before.freeSlots - 1);
    EXPECT_EQ(after.freeFiberSlots, before.freeFiberSlots - 1);
    EXPECT_EQ(after.handles, before.handles + 1);
    EXPECT_EQ(after.drawing, before.drawing + 1);
    EXPECT_EQ(after.menus, before.menus + 1);
    EXPECT_GT(after.heapBlocks, before.heapBlocks);
    HeapFree(GetProcessHeap(), 0, block);
    DestroyMenu(menu);
    DeleteObject(bitmap);
    CloseHandle(event);
    FlsFree(fiberSlot);
    TlsFree(slot);
}

}  // namespace
}  // namespace dll_tests
