// The same for the commands of the first level of the menu.
#include <algorithm>
#include <utility>
#include <vector>

#include "contextmenu/handover_file.h"
#include "testing/host_life_win32.h"
#include "tools/rightclick/menu_reader_win32.h"

namespace dll_tests {
namespace {

constexpr const wchar_t* kCommandModule = L"nmcommand.dll";
constexpr int kCommandLoads = 1000;

// What a menu shows (text, state, identifier of the picture) and starts, one line each.
using Lines = std::vector<std::u16string>;

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

// What a choice starts, with the paths in a hand-over file, which is then gone.
std::u16string startedBy(const std::function<void()>& choice) {
    faults.start.clear();
    choice();
    std::u16string start = std::exchange(faults.start, {});
    if (const std::size_t at = start.find(u"-tfn "); at != std::u16string::npos) {
        nmshell::LaunchRequest request;
        nmshell::HandoverFiles files;
        nmshell::parseArguments({u"-tfn", start.substr(at + 5)}, request, files);
        start += u'|' + request.data;
    }
    return start;
}

// Chooses a command after asking it all that a shell may ask, and then those below it, which a copy of the
// enumerator gives.
void useCommand(IExplorerCommand& command, IShellItemArray* items, Lines& lines) {
    GUID name = {};
    EXPCMDFLAGS flags = ECF_DEFAULT;
    EXPCMDSTATE state = ECS_HIDDEN;
    LPWSTR title = nullptr, icon = nullptr, tip = nullptr;
    EXPECT_EQ(command.GetCanonicalName(&name), S_OK);
    EXPECT_EQ(command.GetFlags(&flags), S_OK);
    for (const BOOL slow : {FALSE, TRUE})
        EXPECT_EQ(command.GetState(items, slow, &state), S_OK);
    if (state == ECS_HIDDEN)
        return;
    taken(command.GetToolTip(items, &tip), tip);
    const std::u16string picture = taken(command.GetIcon(items, &icon), icon);
    EXPECT_EQ(picture.empty() ? 20 : widthOf(picture), 20);
    lines.push_back(taken(command.GetTitle(items, &title), title) + (state == ECS_DISABLED ? u" x " : u" ") +
                    picture.substr(picture.rfind(u'-') + 1));
    lines.push_back(startedBy([&] { command.Invoke(items, nullptr); }));
    ComPointer<IEnumExplorerCommand> below, copy;
    if (flags != ECF_HASSUBCOMMANDS || FAILED(command.EnumSubCommands(receive(below))))
        return;
    EXPECT_EQ(below.get()->Skip(1), S_OK);
    EXPECT_EQ(below.get()->Clone(receive(copy)), S_OK);
    EXPECT_EQ(copy.get()->Reset(), S_OK);
    for (ComPointer<IExplorerCommand> next; copy.get()->Next(1, receive(next), nullptr) == S_OK;)
        useCommand(*next.get(), items, lines);
}

ComPointer<IExplorerCommand> makeRoot() {
    ComPointer<IExplorerCommand> root;
    CLSID classId = {};
    CLSIDFromString(wide(nmshell::kCommandClassId.data()), &classId);
    EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IExplorerCommand, receive(root)),
              S_OK);
    return root;
}

// The first level of the menu as COM brings it about.
Lines useCommands(IShellItemArray* items) {
    Lines lines;
    if (const ComPointer<IExplorerCommand> root = makeRoot(); root) {
        observe(GetModuleHandleW(kCommandModule));
        useCommand(*root.get(), items, lines);
    }
    CoFreeUnusedLibraries();
    EXPECT_EQ(GetModuleHandleW(kCommandModule), nullptr);
    return lines;
}

void useEntry(IContextMenu& menu, const rightclick::MenuEntry& entry, Lines& lines) {
    const std::string bitmap = entry.bitmap == rightclick::kNoBitmap ? "" : std::to_string(entry.bitmap);
    lines.push_back((entry.separator ? u"--" : entry.text) + (entry.grayed ? u" x " : u" ") +
                    std::u16string(bitmap.begin(), bitmap.end()));
    lines.push_back(startedBy([&] {
        CMINVOKECOMMANDINFO info = {};
        info.cbSize = sizeof info;
        info.lpVerb = MAKEINTRESOURCEA(entry.id - 1);
        if (entry.id != 0)
            menu.InvokeCommand(&info);
    }));
    for (const rightclick::MenuEntry& below : entry.children)
        useEntry(menu, below, lines);
}

// The same of the context menu.
Lines useContextMenu(const std::vector<std::u16string>& paths) {
    Lines lines;
    {
        ComPointer<IShellExtInit> object;
        ComPointer<IContextMenu> menu;
        CLSID classId = {};
        CLSIDFromString(wide(nmshell::kFileSystemClassId.data()), &classId);
        CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IShellExtInit, receive(object));
        const HMODULE module = GetModuleHandleW(kModule);
        observe(module);
        object.get()->Initialize(nullptr, rightclick::makeDropObject(paths).get(), nullptr);
        object.get()->QueryInterface(IID_IContextMenu, receive(menu));
        const HMENU popup = CreatePopupMenu();
        menu.get()->QueryContextMenu(popup, 0, 1, 0x7FFF, CMF_NORMAL);
        std::vector<rightclick::MenuEntry> entries = rightclick::readMenuEntries(popup, 0, module);
        DestroyMenu(popup);
        // Between separators: the entry of the selection, and the product's, which is the root command.
        EXPECT_EQ(entries.size(), 4u);
        entries[2].children.insert(entries[2].children.begin(), entries[1]);
        useEntry(*menu.get(), entries[2], lines);
    }
    CoFreeUnusedLibraries();
    return lines;
}

TEST_F(HostLife, LosesNothingByCommands) {
    const ComPointer<IShellItemArray> one = arrayOf({u"C:\\windows\\win.ini"});
    setSetting(L"Language", REG_SZ, std::string("e\0n\0\0\0", 6));
    const Lines lines = useCommands(one.get());
    EXPECT_EQ(lines.size(), 22u);
    expectNothingLost(kCommandLoads, [&] { EXPECT_EQ(useCommands(one.get()), lines); });
    EXPECT_EQ(faults.thrown, 0);
    one.get()->AddRef();
    EXPECT_EQ(one.get()->Release(), 1u) << "references to the selection";
    setSetting(L"Enabled", REG_DWORD, std::string(4, '\0'));
    EXPECT_EQ(useCommands(one.get()), Lines());
    const ComPointer<IExplorerCommand> whileOff = makeRoot();  // keeps the module loaded
    observe(GetModuleHandleW(kCommandModule));
    setSetting(L"Enabled", REG_DWORD, std::string("\1\0\0\0", 4));
    setSetting(L"Language", REG_SZ, std::string("d\0e\0\0\0", 6));  // for the next process
    Lines again;
    useCommand(*makeRoot().get(), one.get(), again);
    EXPECT_EQ(again, lines);
}

TEST_F(HostLife, ShowsAndStartsByCommandsWhatTheContextMenuDoes) {
    std::vector<std::u16string> many;
    std::u16string list;
    for (int i = 0; i < 10000; ++i) {
        const std::string name = "C:\\windows\\file " + std::to_string(i);
        many.emplace_back(name.begin(), name.end());
        (list += many.back()) += u'\0';
    }
    setSetting(L"Language", REG_SZ, std::string("e\0n\0\0\0", 6));
    for (const std::vector<std::u16string>& paths : {{u"C:\\windows\\gone"}, {u"C:\\windows"}, many}) {
        SCOPED_TRACE(paths.size());
        const ComPointer<IShellItemArray> items = arrayOf(paths);
        const ULONGLONG start = GetTickCount64();
        const Lines lines = useCommands(items.get());
        std::cout << paths.size() << " items: " << GetTickCount64() - start << " ms\n";
        const Lines classic = useContextMenu(paths);
        ASSERT_EQ(lines.size(), 22u);
        const auto [own, other] = std::ranges::mismatch(lines, classic);
        EXPECT_EQ(own - lines.begin(), 22) << "the line that differs";
        EXPECT_EQ(other, classic.end());
        EXPECT_EQ(lines[3].ends_with(u'|' + list), paths.size() > 1) << "the paths";
    }
}

}  // namespace
}  // namespace dll_tests
