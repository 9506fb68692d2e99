#include <algorithm>

#include "foundation/path/path.h"
#include "platform/module.h"
#include "platform/shell.h"
#include "tools/rightclick/client.h"
#include "tools/rightclick/com_pointer.h"
#include "tools/rightclick/failure.h"
#include "tools/rightclick/menu_reader_win32.h"
#include "tools/rightclick/picture_win32.h"
#include "tools/rightclick/shell_selection_win32.h"
#include "tools/rightclick/text.h"

namespace rightclick {
namespace {

using nmshell::SelectionKind;
using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

struct LibraryTraits {
    using Type = HMODULE;
    static constexpr Type none() { return nullptr; }
    static void close(Type library) noexcept { FreeLibrary(library); }
};
using Library = platform::UniqueHandle<LibraryTraits>;

// The apartment in which the extension and the shell's objects live. Console output is UTF-8 in the meantime.
class Apartment {
  public:
    Apartment() : codePage_(GetConsoleOutputCP()) {
        SetProcessDPIAware();  // else sizes and places on the screen are not the real ones
        require(OleInitialize(nullptr), "COM cannot be used");
        SetConsoleOutputCP(CP_UTF8);
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() {
        SetConsoleOutputCP(codePage_);
        OleUninitialize();
    }

  private:
    UINT codePage_;
};

// Fails with what GetLastError tells; a call that tells nothing has failed all the same.
void requireCall(bool succeeded, const char* what) {
    const DWORD error = succeeded ? ERROR_SUCCESS : GetLastError();
    require(succeeded ? S_OK : error != ERROR_SUCCESS ? HRESULT_FROM_WIN32(error) : E_FAIL, what);
}

std::u16string absolute(const std::u16string& path) {
    std::u16string full(GetFullPathNameW(platform::wide(path), 0, nullptr, nullptr), u'\0');
    const DWORD length = GetFullPathNameW(platform::wide(path), static_cast<DWORD>(full.size()),
                                          platform::wide(full.data()), nullptr);
    full.resize(length < full.size() ? length : 0);
    return full;
}

std::u16string fullPath(const std::u16string& name) {
    std::u16string path = absolute(name);
    if (path.ends_with(u'\\') && !path.ends_with(u":\\"))
        path.pop_back();  // the shell names folders without a separator at the end
    if (owlkit::pathType(path) == owlkit::PathType::Unreadable)
        throw Failure(ExitCode::MissingObject, "no such file: " + utf8(name));
    return path;
}

std::u16string drivePath(const std::u16string& name) {
    const std::u16string path = name.ends_with(u':') ? name + u'\\' : name;
    if (platform::driveNumber(path) < 0 || GetDriveTypeW(platform::wide(path)) <= DRIVE_NO_ROOT_DIR)
        throw Failure(ExitCode::MissingObject, "no such drive: " + utf8(name));
    return path;
}

// The module that an object's code lies in, kept loaded: its method table is part of it.
Library moduleOf(IUnknown* object) {
    HMODULE module = nullptr;
    const wchar_t* address = *reinterpret_cast<const wchar_t**>(object);
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, address, &module))
        throw Failure(ExitCode::PlatformFailure, "the extension's module cannot be told");
    return Library(module);
}

}  // namespace

struct Client::State {
    Apartment apartment;
    Request request;
    std::vector<std::u16string> paths;
    ShellSelection shell;
    ComPointer<IDataObject> data;
    ComPointer<IShellItemArray> items;
    const char* dataSource = "none";
    Library library;    // loaded from the file that was named
    Library extension;  // where the object comes from
    ComPointer<IContextMenu> shellMenu;
    platform::MenuHandle menu;

    HMENU handle() const { return static_cast<HMENU>(menu.get()); }

    GetClassObject loadLibrary() {
        const std::u16string file = fullPath(request.dll);
        library.reset(LoadLibraryExW(platform::wide(file), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
        requireCall(static_cast<bool>(library), "the DLL cannot be loaded");
        const FARPROC function = GetProcAddress(library.get(), "DllGetClassObject");
        requireCall(function != nullptr, "the DLL is no COM server");
        return reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(function));
    }
};

Client::Client() : state_(std::make_unique<State>()) {}
Client::~Client() = default;

void Client::addOptions(CLI::App&) {}

void Client::select(const Request& request) {
    State& state = *state_;
    state.request = request;
    for (const std::u16string& path : request.paths)
        state.paths.push_back(request.kind == SelectionKind::Drives ? drivePath(path) : fullPath(path));
    state.shell = ShellSelection::find(request.kind, state.paths);
    state.data = state.shell.dataObject();
    if (state.data)
        state.dataSource = "shell";
    if (request.kind == SelectionKind::RecycleBin)
        return;  // it has no drop list
    if (state.data && dropsObjects(*state.data.get(), request.kind, state.paths.size()))
        return;
    state.data = makeDropObject(state.paths);
    state.dataSource = "client";
}

const std::vector<std::u16string>& Client::paths() const {
    return state_->paths;
}

HRESULT Client::createObject(REFCLSID classId, REFIID iid, void** object) {
    State& state = *state_;
    HRESULT result = S_OK;
    if (state.request.dll.empty()) {
        result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, iid, object);
    } else {
        const GetClassObject getClassObject = state.loadLibrary();
        ComPointer<IClassFactory> factory;
        result = getClassObject(classId, IID_IClassFactory, receive(factory));
        if (SUCCEEDED(result))
            result = factory.get()->CreateInstance(nullptr, iid, object);
    }
    if (SUCCEEDED(result))
        state.extension = moduleOf(static_cast<IUnknown*>(*object));
    return result;
}

bool Client::usesRegistration() const {
    return state_->request.dll.empty();
}

std::u16string Client::modulePath() const {
    return platform::moduleFileName(state_->extension.get());
}

IShellItemArray* Client::itemArray() {
    state_->items = makeItemArray(state_->paths);
    return state_->items.get();
}

IDataObject* Client::dataObject() {
    return state_->data.get();
}

const char* Client::dataObjectSource() const {
    return state_->dataSource;
}

platform::MenuRef Client::openMenu(std::uint32_t& position) {
    State& state = *state_;
    state.menu.reset(CreatePopupMenu());
    requireCall(static_cast<bool>(state.menu), "there is no menu");
    if (state.request.shellEntries)
        state.shellMenu = state.shell.contextMenu();
    if (state.shellMenu)
        state.shellMenu.get()->QueryContextMenu(state.handle(), 0, kShellFirstId, kShellLastId,
                                                state.request.flags);
    position = static_cast<std::uint32_t>(std::max(GetMenuItemCount(state.handle()), 0));
    return state.menu.get();
}

std::vector<MenuEntry> Client::readMenu(std::uint32_t position) {
    return readMenuEntries(state_->handle(), position, state_->extension.get());
}

// What was started is not told to the one who asked, and it gets a console of its own.
std::vector<Start> Client::run(const std::function<void()>& command, bool) {
    command();
    return {};
}

void Client::takePicture(const std::u16string& file, int submenu) {
    ComPointer<IContextMenu2> drawing;
    if (state_->shellMenu)
        state_->shellMenu.get()->QueryInterface(IID_IContextMenu2, receive(drawing));
    writePng(file, takePopupPicture(state_->handle(), submenu, drawing.get()));
}

}  // namespace rightclick
