// A shell that lives on: it loads the extension for a right-click, lets it go again, and does so thousands of
// times. Run where the extension is registered.
#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <thread>
#include <vector>

#include "comserver/identifiers.h"
#include "contextmenu/handover_file.h"
#include "platform/com.h"
#include "tests/dll/footprint.h"
#include "tests/dll/imports.h"
#include "tools/rightclick/com_pointer.h"
#include "tools/rightclick/shell_selection_win32.h"

namespace dll_tests {
namespace {

using platform::wide;
using rightclick::ComPointer;
using rightclick::receive;

constexpr const wchar_t* kModule = L"nmshell.dll";
constexpr int kLoads = 2000;
constexpr DWORD kCommands = 15;
constexpr const wchar_t* kCommandModule = L"nmcommand.dll";
constexpr int kCommandLoads = 1000;
constexpr ULONG kEntries = 10;  // below the root command

struct Click {
    const char16_t* classId;
    std::vector<std::u16string> paths;
};
const Click kClicks[] = {{nmshell::kFileSystemClassId.data(), {u"C:\\windows", u"C:\\windows\\win.ini"}},
                         {nmshell::kDriveClassId.data(), {u"C:\\"}},
                         {nmshell::kRecycleBinClassId.data(), {}}};

void setSetting(const wchar_t* name, DWORD type, const std::string& bytes) {
    const std::u16string path(nmshell::kSettingsPath);
    EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, wide(path), name, type, bytes.data(),
                              static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
}

// The calls of the loaded module that are led here: the n-th of the kind that was asked for fails.
struct Faults {
    const char* name = "";
    int countdown = 0;
    bool forGood = false;
    bool fired = false;
    bool noSlots = false;  // for the states of threads
    int thrown = 0;
    int freed = 0;
    int launches = 0;
    std::u16string parameters;  // of the last launch

    void arm(const char* call, int n, bool each) {
        name = call;
        countdown = n;
        forGood = each;
        fired = false;
    }
    void disarm() { name = "", noSlots = false; }
    bool next(const char* call) {
        if (noSlots && std::string_view(call).starts_with("Fls"))
            return true;
        if (name != std::string_view(call) || (fired ? !forGood : --countdown != 0))
            return false;
        return fired = true;
    }
};
Faults faults;

// One function for each signature; no two of the calls below have the same.
template <class Signature>
struct Failing;
template <class Result, class... Arguments>
struct Failing<Result(Arguments...)> {
    static inline const char* name;
    static inline Result (*original)(Arguments...);
    static inline Result failure;

    static Result call(Arguments... arguments) {
        if (!faults.next(name))
            return original(arguments...);
        SetLastError(ERROR_ACCESS_DENIED);
        return failure;
    }
};

template <class Signature, class Failure>
void makeFailing(HMODULE module, const char* name, Failure failure) {
    using Hook = Failing<Signature>;
    Hook::name = name;
    Hook::failure = failure;
    Hook::original = reinterpret_cast<Signature*>(lead(module, name, reinterpret_cast<void*>(&Hook::call)));
}

void WINAPI countThrown(DWORD code, DWORD flags, DWORD count, const ULONG_PTR* arguments) {
    ++faults.thrown;
    RaiseException(code, flags, count, arguments);
}

HINSTANCE WINAPI countLaunch(HWND, LPCWSTR, LPCWSTR, LPCWSTR parameters, LPCWSTR, INT) {
    ++faults.launches;
    faults.parameters = reinterpret_cast<const char16_t*>(parameters);
    return reinterpret_cast<HINSTANCE>(33);
}

// Wine loses memory at every question about a Recycle Bin.
HRESULT WINAPI answerBin(LPCWSTR, SHQUERYRBINFO* info) {
    info->i64NumItems = info->i64Size = 1;
    return S_OK;
}

void (*freeBlock)(void*);
void countFreed(void* block) {
    ++faults.freed;
    freeBlock(block);
}

void observe(HMODULE module) {
    freeBlock = reinterpret_cast<void (*)(void*)>(lead(module, "free", reinterpret_cast<void*>(&countFreed)));
    lead(module, "RaiseException", reinterpret_cast<void*>(&countThrown));
    lead(module, "ShellExecuteW", reinterpret_cast<void*>(&countLaunch));
    lead(module, "SHQueryRecycleBinW", reinterpret_cast<void*>(&answerBin));
}

void makeCallsFailing(HMODULE module) {
    makeFailing<decltype(FlsAlloc)>(module, "FlsAlloc", FLS_OUT_OF_INDEXES);
    makeFailing<decltype(FlsSetValue)>(module, "FlsSetValue", FALSE);
    makeFailing<decltype(malloc)>(module, "malloc", nullptr);
    makeFailing<decltype(RegOpenKeyExW)>(module, "RegOpenKeyExW", ERROR_ACCESS_DENIED);
    makeFailing<decltype(RegQueryValueExW)>(module, "RegQueryValueExW", ERROR_ACCESS_DENIED);
    makeFailing<decltype(GetModuleFileNameW)>(module, "GetModuleFileNameW", 0U);
    makeFailing<decltype(FindFirstFileW)>(module, "FindFirstFileW", INVALID_HANDLE_VALUE);
    makeFailing<decltype(CreateFileW)>(module, "CreateFileW", INVALID_HANDLE_VALUE);
    makeFailing<decltype(ReadFile)>(module, "ReadFile", FALSE);
    makeFailing<decltype(GlobalLock)>(module, "GlobalLock", nullptr);
    makeFailing<decltype(SHQueryRecycleBinW)>(module, "SHQueryRecycleBinW", E_FAIL);
    makeFailing<decltype(CreateMenu)>(module, "CreateMenu", nullptr);
    makeFailing<decltype(InsertMenuItemW)>(module, "InsertMenuItemW", FALSE);
    makeFailing<decltype(LoadImageW)>(module, "LoadImageW", nullptr);
}
constexpr const char* kFailingCalls[] = {
    "malloc",         "RegOpenKeyExW", "RegQueryValueExW", "GetModuleFileNameW",
    "FindFirstFileW", "CreateFileW",   "ReadFile",         "SHQueryRecycleBinW",
    "GlobalLock",     "CreateMenu",    "LoadImageW",       "InsertMenuItemW",
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
    command.lpVerb = MAKEINTRESOURCEA(7);
    menu.get()->InvokeCommand(&command);
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
// the thousands of allocations ever fewer are tried.
int walkFailures(const char* name) {
    int lives = 0;
    for (const Click& click : kClicks)
        for (const bool forGood : {false, true})
            for (int n = 1; n == 1 || faults.fired; n += 1 + n / 8, ++lives)
                failingLife(click, name, n, forGood);
    return lives;
}

// The shell's array of these paths, whether or not there is anything.
ComPointer<IShellItemArray> arrayOf(const std::vector<std::u16string>& paths) {
    std::vector<rightclick::ItemList> items;
    std::vector<PCIDLIST_ABSOLUTE> lists;
    for (const std::u16string& path : paths) {
        items.emplace_back(SHSimpleIDListFromPath(wide(path)));
        lists.push_back(items.back().get());
    }
    ComPointer<IShellItemArray> array;
    EXPECT_EQ(
        SHCreateShellItemArrayFromIDLists(static_cast<UINT>(lists.size()), lists.data(), receive(array)),
        S_OK);
    return array;
}

std::u16string taken(HRESULT result, const LPWSTR& text) {
    const std::u16string copy(result == S_OK ? reinterpret_cast<const char16_t*>(text) : u"");
    CoTaskMemFree(text);
    return copy;
}

// The width of the icon resource that "FILE,-ID" names at 20 pixels; 0 when there is none.
LONG widthOf(const std::u16string& icon) {
    const std::size_t comma = icon.rfind(u',');
    HICON found = nullptr;
    ICONINFO info = {};
    BITMAP bitmap = {};
    PrivateExtractIconsW(
        wide(icon.substr(0, comma)),
        std::stoi(std::string(icon.begin() + static_cast<std::ptrdiff_t>(comma) + 1, icon.end())), 20, 20,
        &found, nullptr, 1, 0);
    GetIconInfo(found, &info);
    GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    DestroyIcon(found);
    return bitmap.bmWidth;
}

// What a shell asks each command, the wipe command being chosen; answers the title of that one.
std::u16string useCommands(IExplorerCommand& root, IShellItemArray* items) {
    std::u16string wipe;
    EXPCMDSTATE state = ECS_HIDDEN;
    EXPECT_EQ(root.GetState(items, FALSE, &state), S_OK);
    ComPointer<IEnumExplorerCommand> commands;
    if (state != ECS_ENABLED || FAILED(root.EnumSubCommands(receive(commands))))
        return {};
    IExplorerCommand* next[kEntries] = {};
    ULONG fetched = 0;
    EXPECT_EQ(commands.get()->Next(kEntries, next, &fetched), S_OK);
    for (ULONG i = 0; i < fetched; ++i) {
        const ComPointer<IExplorerCommand> command(next[i]);
        LPWSTR title = nullptr, tip = nullptr;
        const std::u16string text = taken(next[i]->GetTitle(items, &title), title);
        taken(next[i]->GetToolTip(items, &tip), tip);
        if (i == 0) {
            wipe = text;
            EXPECT_EQ(next[i]->Invoke(items, nullptr), S_OK);
        }
    }
    return wipe;
}

// The first level of the menu as COM brings it about.
std::u16string askCommands(IShellItemArray* items) {
    std::u16string wipe;
    {
        ComPointer<IExplorerCommand> root;
        CLSID classId = {};
        CLSIDFromString(wide(nmshell::kCommandClassId.data()), &classId);
        EXPECT_EQ(
            CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IExplorerCommand, receive(root)),
            S_OK);
        if (root) {
            observe(GetModuleHandleW(kCommandModule));
            wipe = useCommands(*root.get(), items);
        }
    }
    CoFreeUnusedLibraries();
    EXPECT_EQ(GetModuleHandleW(kCommandModule), nullptr);
    return wipe;
}

class HostLife : public ::testing::Test {
  protected:
    HostLife() {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        RegDeleteTreeW(HKEY_CURRENT_USER, wide(std::u16string(nmshell::kSettingsPath)));
    }
    ~HostLife() override {
        EXPECT_EQ(GetModuleHandleW(kModule), nullptr);
        CoUninitialize();
    }

    // Runs `life` a few times, for what the system itself keeps, and then compares what is held before and
    // after it.
    static void expectNothingLost(int times, const std::function<void()>& life, int warmUp = 6) {
        for (int i = 0; i < warmUp; ++i)
            life();
        const Footprint before = Footprint::now();
        faults.thrown = 0;
        for (int i = 0; i < times && !HasFailure(); ++i)
            life();
        const Footprint after = Footprint::now();
        EXPECT_EQ(after, before);
        std::cout << times << " times: " << after << ", " << faults.thrown << " exceptions\n";
    }
};

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

TEST_F(HostLife, LosesNothingByCommands) {
    const ComPointer<IShellItemArray> one = arrayOf({u"C:\\windows\\win.ini"});
    setSetting(L"Language", REG_SZ, std::string("e\0n\0\0\0", 6));
    expectNothingLost(kCommandLoads, [&] { EXPECT_EQ(askCommands(one.get()), u"&Wipe file"); });
    EXPECT_EQ(faults.thrown, 0);
    one.get()->AddRef();
    EXPECT_EQ(one.get()->Release(), 1u) << "references to the selection";
    setSetting(L"Enabled", REG_DWORD, std::string(4, '\0'));
    EXPECT_EQ(askCommands(one.get()), u"");
}

TEST_F(HostLife, HandsOverFiftyThousandItems) {
    std::vector<std::u16string> paths;
    std::u16string list;
    for (int i = 0; i < 50000; ++i) {
        const std::string name = "C:\\windows\\file " + std::to_string(i);
        paths.emplace_back(name.begin(), name.end());
        (list += paths.back()) += u'\0';
    }
    const ComPointer<IShellItemArray> many = arrayOf(paths);
    setSetting(L"Language", REG_SZ, std::string("e\0n\0\0\0", 6));
    const ULONGLONG start = GetTickCount64();
    EXPECT_EQ(askCommands(many.get()), u"&Wipe selected items");
    std::cout << GetTickCount64() - start << " ms\n";
    nmshell::LaunchRequest request;
    nmshell::HandoverFiles files;
    nmshell::parseArguments({u"-tfn", faults.parameters.substr(faults.parameters.find(u"-tfn ") + 5)},
                            request, files);
    EXPECT_TRUE(request.data == list);
}

TEST_F(HostLife, GivesEveryCommandItsIcon) {
    ComPointer<IExplorerCommand> root;
    ComPointer<IEnumExplorerCommand> commands;
    CLSID classId = {};
    CLSIDFromString(wide(nmshell::kCommandClassId.data()), &classId);
    ASSERT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IExplorerCommand, receive(root)),
              S_OK);
    ASSERT_EQ(root.get()->EnumSubCommands(receive(commands)), S_OK);
    int icons = 0;
    for (ComPointer<IExplorerCommand> command = std::move(root); command;) {
        LPWSTR text = nullptr;
        const std::u16string icon = taken(command.get()->GetIcon(nullptr, &text), text);
        if (!icon.empty()) {
            ++icons;
            EXPECT_EQ(widthOf(icon), 20) << std::string(icon.begin(), icon.end());
        }
        commands.get()->Next(1, receive(command), nullptr);
    }
    EXPECT_EQ(icons, 6);
}

TEST_F(HostLife, LosesNothingByFailures) {
    int thrown = 0;
    for (const char* const name : kFailingCalls) {
        SCOPED_TRACE(name);
        int lives = 0;
        expectNothingLost(
            1, [&] { lives = walkFailures(name); }, 1);
        std::cout << name << ": " << lives << " lives\n";
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
