// Right-clicks on two handlers in turn, nmshell.dll and bare_handler.dll, in one process, and tells how long
// each took: right_click_bench FOLDER CASE ...
// Each CASE is a folder in FOLDER with both modules and the language files that they are to load. The first
// is the one whose menus are measured, of the others only the load. A line a row:
//   WORK<tab>ours, median<tab>ours, tenth percentile<tab>bare, median<tab>bare, tenth percentile
//   (nanoseconds)
// Exit code 1 says that something did not work, or that the two menus differ.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "comserver/identifiers.h"
#include "platform/com.h"
#include "tools/rightclick/com_pointer.h"

namespace {

using platform::wide;
using rightclick::ComPointer;
using rightclick::receive;

constexpr std::int64_t kRowLasts = 3'000'000'000;  // nanoseconds at most, when it has had the fewest samples
constexpr std::size_t kFewestSamples = 15;
constexpr std::size_t kMostSamples = 1001;
constexpr std::size_t kUnmeasured = 3;  // first samples, while caches fill
constexpr int kUsualSelection = 10;
constexpr int kSelections[] = {1, 10, 100, 1000, 10000, 50000};

void require(bool held, const std::string& what) {
    if (!held)
        throw std::runtime_error(what + ", error " + std::to_string(GetLastError()));
}

std::int64_t now() {
    LARGE_INTEGER ticks;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&frequency);
    return ticks.QuadPart * (1'000'000'000 / frequency.QuadPart);
}

// Gives its paths as a new block each time, as the shell does.
class Selection final : public IDataObject {
  public:
    Selection(const std::u16string& path, int count) {
        DROPFILES header = {};
        header.pFiles = sizeof header;
        header.fWide = TRUE;
        std::u16string names;
        for (int i = 0; i < count; ++i)
            names += (path + std::u16string(static_cast<std::size_t>(i % 40), u'x')).append(1, u'\0');
        names += u'\0';
        block_.assign(reinterpret_cast<const char*>(&header), sizeof header);
        block_.append(reinterpret_cast<const char*>(names.data()), names.size() * sizeof(char16_t));
    }
    virtual ~Selection() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC*, STGMEDIUM* medium) override {
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, block_.size());
        if (memory == nullptr)
            return E_OUTOFMEMORY;
        std::memcpy(GlobalLock(memory), block_.data(), block_.size());
        GlobalUnlock(memory);
        *medium = {};
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = memory;  // the caller frees it
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }

  private:
    std::string block_;
};

struct Click {
    const char* name;
    CLSID clsid;
    Selection* data;
};

struct ModuleTraits {
    using Type = HMODULE;
    static constexpr Type none() { return nullptr; }
    static void close(Type module) noexcept { FreeLibrary(module); }
};

class Server {
  public:
    explicit Server(std::string file) : module_(LoadLibraryA(file.c_str())) {
        require(static_cast<bool>(module_), file);
    }

    ComPointer<IContextMenu> menuOf(const Click& click) const {
        const ComPointer<IShellExtInit> object = create(click);
        initialize(object, click.data);
        ComPointer<IContextMenu> menu;
        require(object.get()->QueryInterface(IID_IContextMenu, receive(menu)) == S_OK, "IContextMenu");
        return menu;
    }

    ComPointer<IShellExtInit> create(const Click& click) const {
        const auto get = reinterpret_cast<decltype(&DllGetClassObject)>(
            reinterpret_cast<void*>(GetProcAddress(module_.get(), "DllGetClassObject")));
        ComPointer<IClassFactory> factory;
        ComPointer<IShellExtInit> object;
        require(get(click.clsid, IID_IClassFactory, receive(factory)) == S_OK, "DllGetClassObject");
        require(factory.get()->CreateInstance(nullptr, IID_IShellExtInit, receive(object)) == S_OK,
                "CreateInstance");
        return object;
    }

    static void initialize(const ComPointer<IShellExtInit>& object, Selection* data) {
        require(object.get()->Initialize(nullptr, data, nullptr) == S_OK, "Initialize");
    }

  private:
    platform::UniqueHandle<ModuleTraits> module_;
};

struct MenuTraits {
    using Type = HMENU;
    static constexpr Type none() { return nullptr; }
    static void close(Type menu) noexcept { DestroyMenu(menu); }
};
using Menu = platform::UniqueHandle<MenuTraits>;

void query(const ComPointer<IContextMenu>& object, const Menu& menu) {
    const HRESULT added = object.get()->QueryContextMenu(menu.get(), 0, 1, 0x7FFF, CMF_NORMAL);
    require(SUCCEEDED(added) && HRESULT_CODE(added) != 0, "QueryContextMenu");
}

void rightClick(const Server& server, const Click& click) {
    const Menu menu(CreatePopupMenu());
    query(server.menuOf(click), menu);
}

// What a menu consists of, but for its texts.
std::string shapeOf(HMENU menu) {
    std::string shape;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        MENUITEMINFOW item = {};
        item.cbSize = sizeof item;
        item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_BITMAP | MIIM_SUBMENU;
        require(GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &item) != FALSE, "GetMenuItemInfoW");
        shape += (item.fType & MFT_SEPARATOR) != 0 ? '-' : (item.fState & MFS_GRAYED) != 0 ? 'g' : 'e';
        shape += item.hbmpItem != nullptr ? "*" : "";
        if (item.hSubMenu != nullptr)
            shape += '(' + shapeOf(item.hSubMenu) + ')';
    }
    return shape;
}

std::string shapeOf(const Server& server, const Click& click) {
    const Menu menu(CreatePopupMenu());
    query(server.menuOf(click), menu);
    return shapeOf(menu.get());
}

// Does the work once and answers the nanoseconds of what is measured of it.
using Work = std::function<std::int64_t()>;

template <class Body>
std::int64_t timeOf(Body body) {
    const std::int64_t before = now();
    body();
    return now() - before;
}

// Both in turn, and every other time the other one first.
void measure(const std::string& name, const Work& ours, const Work& bare) {
    std::array<std::vector<std::int64_t>, 2> times;
    const std::int64_t start = now();
    for (std::size_t i = 0; i < kMostSamples + kUnmeasured; ++i) {
        if (i >= kFewestSamples + kUnmeasured && now() - start > kRowLasts)
            break;
        for (const std::size_t who : {i % 2, 1 - i % 2}) {
            const std::int64_t time = (who == 0 ? ours : bare)();
            if (i >= kUnmeasured)
                times[who].push_back(time);
        }
    }
    std::printf("%s", name.c_str());
    for (std::vector<std::int64_t>& each : times) {
        std::sort(each.begin(), each.end());
        std::printf("\t%lld\t%lld", static_cast<long long>(each[each.size() / 2]),
                    static_cast<long long>(each[each.size() / 10]));
    }
    std::printf("\n");
    std::fflush(stdout);
}

Work loadOnly(const std::string& file) {
    return [file] { return timeOf([&] { const Server server(file); }); };
}

Work coldClick(const std::string& file, const Click& click) {
    return [file, &click] { return timeOf([&] { rightClick(Server(file), click); }); };
}

Work warmClick(const Server& server, const Click& click) {
    return [&] { return timeOf([&] { rightClick(server, click); }); };
}

Work warmQuery(const Server& server, const Click& click) {
    return [&] {
        const ComPointer<IContextMenu> object = server.menuOf(click);
        const Menu menu(CreatePopupMenu());
        return timeOf([&] { query(object, menu); });
    };
}

// So often that the clock's grain does not count.
Work initialize(const Server& server, const Click& click, Selection& selection, int count) {
    return [&, count] {
        const ComPointer<IShellExtInit> object = server.create(click);
        const int times = std::max(1, 1000 / count);
        return timeOf([&] {
                   for (int i = 0; i < times; ++i)
                       Server::initialize(object, &selection);
               }) /
               times;
    };
}

CLSID classOf(std::u16string_view text) {
    CLSID result = {};
    require(CLSIDFromString(wide(text.data()), &result) == S_OK, "CLSIDFromString");
    return result;
}

void run(const std::string& folder, const std::vector<std::string>& cases) {
    const std::string file = "C:\\Users\\somebody\\Documents\\a folder with a long name\\file ";
    const std::u16string path(file.begin(), file.end());
    Selection files(path, kUsualSelection);
    Selection drive(u"C:\\", 1);
    Selection nothing(u"", 0);
    const Click clicks[] = {{"files", classOf(nmshell::kFileSystemClassId), &files},
                            {"drive", classOf(nmshell::kDriveClassId), &drive},
                            {"recycle bin", classOf(nmshell::kRecycleBinClassId), &nothing}};
    const auto ours = [&](const std::string& name) { return folder + '\\' + name + "\\nmshell.dll"; };
    const auto bare = [&](const std::string& name) { return folder + '\\' + name + "\\bare_handler.dll"; };
    for (const std::string& each : cases)
        measure("load, " + each, loadOnly(ours(each)), loadOnly(bare(each)));
    for (const Click& click : clicks)
        measure(std::string("cold right-click, ") + click.name, coldClick(ours(cases[0]), click),
                coldClick(bare(cases[0]), click));
    const Server our(ours(cases[0]));
    const Server other(bare(cases[0]));
    for (const Click& click : clicks) {
        const std::string wanted = shapeOf(our, click);
        const std::string found = shapeOf(other, click);
        require(wanted == found, std::string(click.name) + ": the menus " + wanted + " and " + found);
        measure(std::string("warm right-click, ") + click.name, warmClick(our, click),
                warmClick(other, click));
        measure(std::string("QueryContextMenu, ") + click.name, warmQuery(our, click),
                warmQuery(other, click));
    }
    for (const int count : kSelections) {
        Selection selection(path, count);
        measure("Initialize, " + std::to_string(count), initialize(our, clicks[0], selection, count),
                initialize(other, clicks[0], selection, count));
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        require(argc > 2, "right_click_bench FOLDER CASE ...");
        // A shell has these long before it loads a handler.
        for (const char* const library : {"gdi32.dll", "shell32.dll", "shlwapi.dll", "user32.dll"})
            require(LoadLibraryA(library) != nullptr, library);
        require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) == S_OK, "CoInitializeEx");
        run(argv[1], {argv + 2, argv + argc});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "right_click_bench: %s\n", error.what());
        return 1;
    }
}
