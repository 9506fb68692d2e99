#include "shellext/shell_menu_extension.h"

#include <sstream>

#include "contextmenu/commands.h"
#include "contextmenu/launch_request.h"
#include "shellext/exports.h"
#include "testing/extension.h"

namespace nmshell {
namespace {

using namespace test;

using enum SelectionKind;

using ShellMenuTest = ExtensionTest;

TEST_F(ShellMenuTest, KeepsTheRulesOfIdentity) {
    const Ref<IContextMenu> menu = extension(Files);
    const auto init = query<IUnknown>(menu, IID_IShellExtInit);
    EXPECT_EQ(init.get(), query<IUnknown>(menu, IID_IUnknown).get());
    EXPECT_EQ(init.get(), query<IUnknown>(init, IID_IUnknown).get());
    EXPECT_EQ(menu.get(), query<IContextMenu>(init, IID_IContextMenu).get());
    void* other = this;
    EXPECT_TRUE(init->QueryInterface(IID_IClassFactory, &other) == E_NOINTERFACE);
    EXPECT_TRUE(!other);
    EXPECT_EQ(init->AddRef(), 3u);
    EXPECT_EQ(menu->Release(), 2u);
    EXPECT_EQ(module_.ModuleObjectCount, 1);
}

TEST_F(ShellMenuTest, AddsEntriesWhenItMay) {
    const Ref<IContextMenu> menu = extension(Files, {{u"a"}});
    for (const UINT flags : {0u, 4u, ~11u, 1u, 2u, 8u, ~0u})
        EXPECT_EQ(show(menu, flags), flags & 11 ? 0 : 15) << flags;
    EXPECT_EQ(show(menu, CMF_NORMAL, 7, 7) + show(menu, CMF_NORMAL, 8, 7), 0);
    EXPECT_EQ(show(extension(Drives, {{u"D:\\"}})), 15);
    EXPECT_EQ(shown_, 6u);
    setFlag(u"Icons", false);
    const Ref<IContextMenu> plain = extension(Files, {{u"a", false}, {u"b", false}});
    module_.bitmaps.clear();
    EXPECT_EQ(show(plain), 15);
    EXPECT_EQ(host::userInterface().liveBitmaps, 0);
    EXPECT_EQ(show(menu), 15);
    EXPECT_TRUE(host::userInterface().liveBitmaps != 0);  // made while icons were on
    EXPECT_EQ(initialize(menu), S_OK);
    EXPECT_EQ(show(menu), 0);
    module_.languageLoaded = false;
    const Ref<IContextMenu> refused = extension(RecycleBin);
    EXPECT_EQ(show(refused) + show(plain), 0);
    module_.languageLoaded = true;
    EXPECT_EQ(show(refused), 0);
    EXPECT_EQ(show(plain), 15);
}

TEST_F(ShellMenuTest, IsSilentWhileARecycleBinMenuLives) {
    Ref<IContextMenu> bin = extension(RecycleBin), other = extension(RecycleBin);
    const Ref<IContextMenu> files = extension(Files, {{u"a"}});
    EXPECT_EQ(show(bin, CMF_DEFAULTONLY), 0);
    EXPECT_EQ(show(files), 15);
    EXPECT_EQ(show(bin), 15);
    EXPECT_EQ(show(bin) + show(other) + show(files), 0);
    other.reset();
    EXPECT_EQ(show(files), 0);
    bin.reset();
    EXPECT_EQ(show(files), 15);
}

TEST_F(ShellMenuTest, GivesHelpTextsThatFit) {
    const Ref<IContextMenu> menu = extension(Files);
    std::istringstream keys(
        "WIPE_FILES WIPE_DRIVE CLEAN_DRIVE WIPE_DRIVE_TRASH WIPE_ALL_TRASH WIPE_DRIVE_TRASH WIPE_ALL_TRASH "
        "STANDALONE WIPE_SWAP OPTIONS HELP UPDATE REGISTER UPGRADE ABOUT");
    std::string key;
    char16_t buffer[100] = u"";
    UINT_PTR id = 0;
    for (; keys >> key; ++id) {
        const std::u16string text = platform::fromHostName("CXT_MENU_" + key);
        const UINT room = static_cast<UINT>(text.size()) + 1;
        buffer[0] = buffer[room] = u'#';
        EXPECT_EQ(help(menu, id, buffer, room - 1), E_FAIL);
        EXPECT_EQ(buffer[0], u'#');
        EXPECT_EQ(help(menu, id, buffer, room), S_OK);
        EXPECT_EQ(std::u16string_view(buffer, room + 1), text + u'\0' + u'#');
        for (const UINT type : {0u, 1u, 2u, 4u, 7u, 0x80000005u})
            EXPECT_EQ(menu->GetCommandString(id, type, nullptr, reinterpret_cast<CHAR*>(buffer), 99), E_FAIL);
        EXPECT_EQ(menu->GetCommandString(id, GCS_VALIDATEW, nullptr, nullptr, 0), id == 0 ? S_OK : S_FALSE);
    }
    for (const UINT_PTR other : {id, UINT_PTR{0x10000}, UINT_PTR{0x100000000}, ~UINT_PTR{0}})
        EXPECT_EQ(help(menu, other, buffer, 99), E_FAIL);
    EXPECT_EQ(help(menu, 0, nullptr, 99), E_FAIL);
    module_.texts.BeginLoad();
    EXPECT_EQ(help(menu, 0, buffer, 99), E_FAIL) << "asked for while the table is written: an exception";
}

TEST_F(ShellMenuTest, InvokesByOffsetOnly) {
    const Ref<IContextMenu> menu = extension(Files, {{std::u16string(600, u'a')}, {u"gone", false}});
    EXPECT_EQ(menu->InvokeCommand(nullptr), E_FAIL);
    for (const UINT_PTR verb : {UINT_PTR{15}, UINT_PTR{0xFFFF}, reinterpret_cast<UINT_PTR>("open")})
        EXPECT_EQ(invoke(menu, verb), E_FAIL) << verb;
    // A wide verb beside a narrow one that is missing, or that is the offset given twice.
    CMINVOKECOMMANDINFOEX wide = {};
    wide.cbSize = sizeof wide;
    wide.fMask = CMIC_MASK_UNICODE;
    wide.lpVerbW = u"properties";
    auto* const info = reinterpret_cast<CMINVOKECOMMANDINFO*>(&wide);
    EXPECT_EQ(menu->InvokeCommand(info), E_FAIL);
    EXPECT_TRUE(host::shellStarts().empty());
    wide.lpVerb = reinterpret_cast<LPCSTR>(UINT_PTR{kStandalone});
    wide.lpVerbW = nullptr;
    EXPECT_EQ(menu->InvokeCommand(info), S_OK);
    wide.fMask = 0;
    wide.lpVerbW = u"not looked at";
    EXPECT_EQ(menu->InvokeCommand(info), S_OK);
    host::setShellExecuteResult(5);
    EXPECT_EQ(invoke(menu, 0), S_OK);
    EXPECT_TRUE(lastStart().starts_with(u"open|C:\\App\\nmark.exe|-cmd 101 -cent "));
    LaunchRequest request;
    parseArguments({u"-tfn", folder() + u"tfn_db710640.nmark"}, request, module_.handover);
    EXPECT_EQ(request.data, std::u16string(600, u'a') + u'\0');
    EXPECT_EQ(invoke(extension(Files, {{std::u16string(600, u'b')}}), 0), S_OK);
    EXPECT_TRUE(lastStart().ends_with(u"tfn_c9298960.nmark"));
}

}  // namespace
}  // namespace nmshell
