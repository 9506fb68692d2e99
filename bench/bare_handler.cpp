// A context-menu handler of nothing but platform calls: those that a handler with the rules and the menu of
// nmshell.dll cannot do without, each made once. It reads every language file and forgets it, its texts are
// fixed, and it keeps no list of what it could not do. What nmshell.dll takes is measured against it.
#include <cstdlib>
#include <cwchar>
#include <new>

#include "contextmenu/commands.h"
#include "platform/com.h"
#include "resources/resource.h"

#include <shlwapi.h>

namespace {

constexpr const wchar_t* kApproved =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved";
constexpr const wchar_t* kFilesClass = L"{3D5C9A72-6E1B-4F08-A4C3-91B7E2D05F64}";
constexpr const wchar_t* kSettings = L"Software\\NMark Shell";

enum class Kind { Files, Drives, RecycleBin };

HINSTANCE self;
HBITMAP bitmaps[IDB_LAST - IDB_FIRST + 1];
wchar_t windowsFolder[MAX_PATH];
DWORD elevation;
LONG living;

bool isApproved() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kApproved, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    wchar_t text[32];
    DWORD type = 0;
    DWORD size = sizeof text;
    const LSTATUS result =
        RegQueryValueExW(key, kFilesClass, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
    RegCloseKey(key);
    return result == ERROR_SUCCESS;
}

void readSettings(const wchar_t* first, const wchar_t* second) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kSettings, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    for (const wchar_t* const name : {first, second}) {
        BYTE value[16];
        DWORD type = 0;
        DWORD size = sizeof value;
        if (name != nullptr)
            RegQueryValueExW(key, name, nullptr, &type, value, &size);
    }
    RegCloseKey(key);
}

void readFile(const wchar_t* path) {
    const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return;
    LARGE_INTEGER size = {};
    GetFileSizeEx(file, &size);
    void* const bytes = std::malloc(static_cast<std::size_t>(size.QuadPart));
    DWORD got = 0;
    ReadFile(file, bytes, size.LowPart, &got, nullptr);
    std::free(bytes);
    CloseHandle(file);
}

void readLanguages() {
    wchar_t path[2 * MAX_PATH];
    DWORD length = GetModuleFileNameW(self, path, MAX_PATH);
    while (length != 0 && path[length - 1] != L'\\')
        --length;
    std::wcscpy(path + length, L"langs\\*");
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(path, &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        std::wcscpy(path + length + 6, found.cFileName);
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            readFile(path);
    } while (FindNextFileW(search, &found));
    FindClose(search);
}

HBITMAP bitmap(int id) {
    HBITMAP& cached = bitmaps[id - IDB_FIRST];
    if (cached != nullptr)
        return cached;
    const int side = GetSystemMetrics(SM_CYSMICON);
    UINT flags = LR_DEFAULTSIZE | LR_LOADTRANSPARENT;
    if (GetSysColor(COLOR_WINDOW) != GetSysColor(COLOR_MENU))
        flags |= LR_LOADMAP3DCOLORS;
    return cached =
               static_cast<HBITMAP>(LoadImageW(self, MAKEINTRESOURCEW(id), IMAGE_BITMAP, side, side, flags));
}

// A null text is a separator, one that begins with '>' opens a submenu, which ends with the next empty one.
struct Entry {
    const wchar_t* text;
    int bitmap;
    bool grayed;
};
constexpr Entry kSeparator = {nullptr, 0, false};
constexpr Entry kEnd = {L"", 0, false};
#define PRODUCT                                                                                        \
    {L">Nullmark", IDB_NULLMARK, false}, {L"Settings", IDB_OPTIONS, false},                            \
        {L"Open the application", IDB_STANDALONE, false}, kSeparator, {L"Look for updates", 0, false}, \
        {L"Register", 0, false}, {L"Upgrade", 0, false}, kSeparator, {L"Help", IDB_HELP, false},       \
        {L"About Nullmark", IDB_ABOUT, false}, kEnd, kSeparator, kEnd
#define OWNERS \
    {L"Own items", IDB_USER_RECYCLE_BIN, false}, {L"Items of all users", IDB_ADMIN_RECYCLE_BIN, false}, kEnd
constexpr Entry kFilesMenu[] = {kSeparator, {L"Wipe the selected items", IDB_WIPE_FILES, false}, PRODUCT};
constexpr Entry kDrivesMenu[] = {kSeparator,
                                 {L"Wipe drive", IDB_WIPE_DRIVE, true},
                                 {L"Clean drive", IDB_CLEAN_DRIVE, false},
                                 {L">Wipe the recycle bin (empty)", IDB_RECYCLE_BIN, true},
                                 OWNERS,
                                 PRODUCT};
constexpr Entry kBinMenu[] = {
    kSeparator, {L">Wipe all recycle bins", IDB_RECYCLE_BIN, true}, OWNERS, PRODUCT};
#undef OWNERS
#undef PRODUCT
constexpr const Entry* kMenus[] = {kFilesMenu, kDrivesMenu, kBinMenu};

bool isEnd(const Entry& entry) {
    return entry.text != nullptr && *entry.text == L'\0';
}

bool isGrayed(const Entry& entry) {
    // Who is elevated anyway is offered the bins of all users alone.
    return entry.grayed || (entry.bitmap == IDB_USER_RECYCLE_BIN && elevation == TokenElevationTypeFull);
}

// Answers where the entries end.
const Entry* insert(HMENU menu, UINT position, UINT idFirst, const Entry* entry) {
    for (; !isEnd(*entry); ++entry, ++position) {
        const bool opens = entry->text != nullptr && *entry->text == L'>';
        MENUITEMINFOW item = {};
        item.cbSize = sizeof item;
        item.fMask = MIIM_STATE | MIIM_ID | MIIM_STRING;
        item.fState = isGrayed(*entry) ? MFS_GRAYED : MFS_ENABLED;
        item.wID = idFirst;
        item.fType = entry->text == nullptr ? MFT_SEPARATOR : MFT_STRING;
        item.dwTypeData = const_cast<wchar_t*>(entry->text);
        if (entry->bitmap != 0 && !isGrayed(*entry)) {
            item.fMask |= MIIM_BITMAP;
            item.hbmpItem = bitmap(entry->bitmap);
        }
        if (opens) {
            item.fMask |= MIIM_SUBMENU;
            item.hSubMenu = CreateMenu();
        }
        InsertMenuItemW(menu, position, TRUE, &item);
        if (opens)
            entry = insert(item.hSubMenu, 0, idFirst, entry + 1);
    }
    return entry;
}

class Handler final : public IShellExtInit, public IContextMenu {
  public:
    explicit Handler(Kind kind) : kind_(kind) {
        readSettings(L"Icons", nullptr);
        ++living;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IShellExtInit))
            *object = static_cast<IShellExtInit*>(this);
        else if (IsEqualIID(iid, IID_IContextMenu))
            *object = static_cast<IContextMenu*>(this);
        else
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        if (--references_ != 0)
            return references_;
        std::free(paths_);
        std::free(this);
        --living;
        return 0;
    }

    // One look for the end of each path, and one copy.
    HRESULT STDMETHODCALLTYPE Initialize(PCIDLIST_ABSOLUTE, IDataObject* data, HKEY) override {
        FORMATETC format = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        STGMEDIUM medium = {};
        if (data == nullptr || FAILED(data->GetData(&format, &medium)))
            return S_OK;
        const auto* const block = static_cast<const DROPFILES*>(GlobalLock(medium.hGlobal));
        if (block != nullptr && GlobalSize(medium.hGlobal) > sizeof *block) {
            const auto* const first =
                reinterpret_cast<const wchar_t*>(reinterpret_cast<const char*>(block) + block->pFiles);
            const wchar_t* end = first;
            for (count_ = 0; *end != L'\0'; ++count_)
                end += std::wcslen(end) + 1;
            const auto bytes = static_cast<std::size_t>(end - first) * sizeof(wchar_t);
            std::free(paths_);
            paths_ = static_cast<wchar_t*>(std::malloc(bytes + sizeof(wchar_t)));
            std::wmemcpy(paths_, first, bytes / sizeof(wchar_t));
            GlobalUnlock(medium.hGlobal);
        }
        ReleaseStgMedium(&medium);
        return S_OK;
    }

    // What the shell is asked about a Recycle Bin, which takes longer than all the rest, is not asked here.
    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT index, UINT idFirst, UINT, UINT) override {
        if (kind_ == Kind::Files && count_ == 1)
            GetFileAttributesW(paths_);
        if (kind_ == Kind::Drives) {
            PathGetDriveNumberW(paths_);
            if (windowsFolder[0] == L'\0') {
                GetWindowsDirectoryW(windowsFolder, MAX_PATH);
                PathGetDriveNumberW(windowsFolder);
            }
        }
        if (kind_ != Kind::Files && elevation == 0)
            queryElevation();
        insert(menu, index, idFirst, kMenus[static_cast<int>(kind_)]);
        return MAKE_HRESULT(SEVERITY_SUCCESS, 0, nmshell::kCommandCount);
    }

    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR, UINT, UINT*, CHAR*, UINT) override {
        return E_NOTIMPL;
    }

  private:
    static void queryElevation() {
        HANDLE token = nullptr;
        OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
        DWORD length = 0;
        GetTokenInformation(token, TokenElevationType, &elevation, sizeof elevation, &length);
        CloseHandle(token);
    }

    Kind kind_;
    ULONG references_ = 0;
    std::size_t count_ = 0;
    wchar_t* paths_ = nullptr;
};

// There is one a class, and it is never counted.
class Factory final : public IClassFactory {
  public:
    constexpr explicit Factory(Kind kind) : kind_(kind) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
        void* const room = std::malloc(sizeof(Handler));
        return room == nullptr ? E_OUTOFMEMORY : (new (room) Handler(kind_))->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  private:
    Kind kind_;
};
constinit Factory factories[] = {Factory(Kind::Files), Factory(Kind::Drives), Factory(Kind::RecycleBin)};

}  // namespace

// The first byte of the three class identifiers tells them apart.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (!isApproved())
        return CLASS_E_CLASSNOTAVAILABLE;
    readSettings(L"Enabled", L"Language");
    const int kind = clsid.Data1 == 0x3D5C9A72 ? 0 : clsid.Data1 == 0xC84E10B6 ? 1 : 2;
    return factories[kind].QueryInterface(iid, object);
}

STDAPI DllCanUnloadNow() {
    return living == 0 ? S_OK : S_FALSE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        self = instance;
        if (isApproved()) {
            readSettings(L"Enabled", L"Language");
            readLanguages();
        }
    } else if (reason == DLL_PROCESS_DETACH && isApproved()) {
        readSettings(L"Enabled", nullptr);
        for (const HBITMAP each : bitmaps)
            DeleteObject(each);
    }
    return TRUE;
}
