#include "shellext/shell_menu_extension.h"

#include <cstring>

#include "contextmenu/commands.h"
#include "contextmenu/launch_request.h"
#include "shellext/extension_fixture.h"

namespace nmshell {
namespace {

constexpr SelectionKind kFiles = SelectionKind::Files;
constexpr SelectionKind kBin = SelectionKind::RecycleBin;

class ShellMenuTest : public ExtensionTest {};

TEST_F(ShellMenuTest, KeepsTheRulesOfIdentity) {
    Ref<IContextMenu> menu = extension(kFiles);
    EXPECT_EQ(menu->AddRef(), 2u);
    EXPECT_EQ(menu->Release(), 1u);
    {
        Ref<IUnknown> unknown, fromInit;
        Ref<IShellExtInit> init;
        Ref<IContextMenu> again;
        EXPECT_EQ(menu->QueryInterface(IID_IUnknown, unknown.out()), S_OK);
        EXPECT_EQ(unknown->QueryInterface(IID_IShellExtInit, init.out()), S_OK);
        EXPECT_EQ(init->QueryInterface(IID_IUnknown, fromInit.out()), S_OK);
        EXPECT_EQ(init->QueryInterface(IID_IContextMenu, again.out()), S_OK);
        EXPECT_EQ(static_cast<void*>(unknown.get()), init.get());
        EXPECT_EQ(unknown.get(), fromInit.get());
        EXPECT_EQ(again.get(), menu.get());
        void* other = this;
        EXPECT_EQ(init->QueryInterface(IID_IClassFactory, &other), E_NOINTERFACE);
        EXPECT_EQ(other, nullptr);
        EXPECT_EQ(init->AddRef(), 6u);
        EXPECT_EQ(menu->Release(), 5u);
    }
    EXPECT_EQ(module_.liveObjects, 1);
    menu.reset();
    EXPECT_EQ(module_.liveObjects, 0);
}

TEST_F(ShellMenuTest, RefusesWithoutLanguages) {
    module_.languageLoaded = false;
    for (const SelectionKind kind : {kFiles, SelectionKind::Drives, kBin}) {
        const Ref<IContextMenu> object = extension(kind);
        EXPECT_EQ(initialize(object, {{u"D:\\"}}), E_FAIL);
        EXPECT_EQ(initialize(object, {{u"D:\\"}}), E_FAIL);
        EXPECT_EQ(show(object), std::pair(S_OK, std::size_t{0}));
    }
    EXPECT_EQ(host::releasedMedia(), 0u);
}

TEST_F(ShellMenuTest, AddsEntriesWhenTheShellWantsThem) {
    const Ref<IContextMenu> object = extensionFor(kFiles, {{u"a"}});
    const struct {
        UINT flags, first, last;
        HRESULT result;
    } kCases[] = {
        {CMF_NORMAL, 1000, 2000, 15},
        {CMF_EXPLORE, 1000, 2000, 15},
        {0xFFFFFFF4, 1000, 2000, 15},
        {CMF_DEFAULTONLY, 1000, 2000, 0},
        {CMF_VERBSONLY, 1000, 2000, 0},
        {CMF_NOVERBS, 1000, 2000, 0},
        {0xFFFFFFFF, 1000, 2000, 0},
        {0, 7, 7, 0},
        {0, 8, 7, 0},
        {0, 7, 8, 15},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(show(object, c.flags, c.first, c.last),
                  std::pair(c.result, std::size_t{c.result ? 4u : 0u}))
            << c.flags << ' ' << c.first << ' ' << c.last;
    EXPECT_EQ(initialize(object, {}), S_OK);
    EXPECT_EQ(show(object), std::pair(S_OK, std::size_t{0}));
    EXPECT_EQ(initialize(object, {{u"a", false}, {u"b", false}}), S_OK);
    EXPECT_EQ(show(object), std::pair(HRESULT{15}, std::size_t{4}));
}

TEST_F(ShellMenuTest, IsSilentWhileARecycleBinMenuLives) {
    Ref<IContextMenu> bin = extension(kBin);
    Ref<IContextMenu> files = extensionFor(kFiles, {{u"a"}});
    Ref<IContextMenu> secondBin = extension(kBin);
    EXPECT_EQ(show(bin, CMF_DEFAULTONLY).first, 0);
    EXPECT_EQ(show(files).first, 15);
    EXPECT_EQ(show(bin).first, 15);
    for (const Ref<IContextMenu>* const object : {&bin, &files, &secondBin})
        EXPECT_EQ(show(*object), std::pair(S_OK, std::size_t{0}));
    secondBin.reset();
    EXPECT_EQ(show(files).first, 0);
    bin.reset();
    EXPECT_EQ(show(files).first, 15);
}

TEST_F(ShellMenuTest, ReadsTheIconSettingWhenItIsMade) {
    const Ref<IContextMenu> with = extensionFor(kFiles, {{u"a"}});
    setFlag(u"Icons", 0);
    const Ref<IContextMenu> without = extensionFor(kFiles, {{u"a"}});
    show(without);
    EXPECT_TRUE(host::userInterface().loads.empty());
    show(with);
    EXPECT_FALSE(host::userInterface().loads.empty());
}

TEST_F(ShellMenuTest, GivesHelpTextsThatFit) {
    const Ref<IContextMenu> object = extension(kFiles);
    const char16_t* const kTexts[] = {u"FILES",     u"DRIVE",       u"CLEAN_DRIVE", u"DRIVE_TRASH",
                                      u"ALL_TRASH", u"DRIVE_TRASH", u"ALL_TRASH",   u"STANDALONE",
                                      u"SWAP",      u"OPTIONS",     u"HELP",        u"UPDATE",
                                      u"REGISTER",  u"UPGRADE",     u"ABOUT"};
    for (std::uint32_t id = 0; id < kCommandCount; ++id) {
        SCOPED_TRACE(id);
        const bool wipes = id <= 8 && id != 2 && id != 7;
        const std::u16string text = std::u16string(u"CXT_MENU_") + (wipes ? u"WIPE_" : u"") + kTexts[id];
        std::u16string buffer(text.size() + 1, u'#');
        CHAR* const bytes = reinterpret_cast<CHAR*>(buffer.data());
        const UINT size = static_cast<UINT>(buffer.size());
        EXPECT_EQ(object->GetCommandString(id, GCS_HELPTEXTW, nullptr, bytes, size - 1), E_FAIL);
        EXPECT_EQ(buffer, std::u16string(text.size() + 1, u'#'));
        EXPECT_EQ(object->GetCommandString(id, GCS_HELPTEXTW, nullptr, bytes, size), S_OK);
        EXPECT_EQ(buffer, text + u'\0');
        for (const UINT type : {0u, 1u, 2u, 4u, 7u, 0x80000005u})
            EXPECT_EQ(object->GetCommandString(id, type, nullptr, bytes, size), E_FAIL) << type;
        EXPECT_EQ(object->GetCommandString(id, GCS_VALIDATEW, nullptr, nullptr, 0), id == 0 ? S_OK : S_FALSE);
    }
    for (const UINT_PTR id : {UINT_PTR{15}, UINT_PTR{0x10000}, UINT_PTR{0x100000000}, ~UINT_PTR{0}})
        EXPECT_EQ(help(object, id), u"(failed)");
    module_.texts.BeginLoad();
    module_.texts.SetKey(u"CXT_MENU_HELP");
    module_.texts.SetLanguage(u"en");
    module_.texts.AddText(u"");
    module_.texts.EndLoad();
    EXPECT_EQ(help(object, 10), u"(failed)");
    EXPECT_EQ(object->GetCommandString(7, GCS_HELPTEXTW, nullptr, nullptr, 100), E_FAIL);
}

TEST_F(ShellMenuTest, InvokesByOffsetOnly) {
    const Ref<IContextMenu> object = extensionFor(kFiles, {{std::u16string(600, u'a')}, {u"gone", false}});
    EXPECT_EQ(object->InvokeCommand(nullptr), E_FAIL);
    for (const UINT_PTR verb :
         {UINT_PTR{15}, UINT_PTR{0xFFFF}, UINT_PTR{0x10000}, reinterpret_cast<UINT_PTR>("open")})
        EXPECT_EQ(invoke(object, verb), E_FAIL) << verb;
    EXPECT_TRUE(platform::shellStarts().empty());
    platform::setShellExecuteResult(5);
    EXPECT_EQ(invoke(object, 0), S_OK);
    const platform::ShellStart& start = platform::shellStarts().at(0);
    EXPECT_EQ(start.file, u"C:\\App\\nmark.exe");
    const std::size_t file = start.parameters.find(u"-tfn ");
    ASSERT_NE(file, std::u16string::npos);
    EXPECT_TRUE(start.parameters.ends_with(u"tfn_db710640.nmark"));
    LaunchRequest request;
    parseArguments({u"-tfn", start.parameters.substr(file + 5)}, request);
    EXPECT_EQ(request.data, std::u16string(600, u'a') + u'\0');
    EXPECT_EQ(module_.handoverCounter, 1u);
    EXPECT_EQ(invoke(extensionFor(kFiles, {{std::u16string(600, u'b')}}), 0), S_OK);
    EXPECT_EQ(module_.handoverCounter, 2u);
}

}  // namespace
}  // namespace nmshell
