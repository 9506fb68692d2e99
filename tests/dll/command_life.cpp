// The same for the commands of the first level of the menu.
#include <vector>

#include "contextmenu/handover_file.h"
#include "tests/dll/host_life.h"

namespace dll_tests {
namespace {

constexpr const wchar_t* kCommandModule = L"nmcommand.dll";
constexpr int kCommandLoads = 1000;
constexpr ULONG kEntries = 10;  // below the root command

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

}  // namespace
}  // namespace dll_tests
