#include "explorercommand/explorer_command.h"

#include <set>
#include <span>

#include "comserver/class_id.h"
#include "explorercommand/command_class.h"
#include "foundation/codec/base64.h"
#include "testing/commands.h"
#include "testing/shown_menu.h"

namespace nmshell {
namespace {

using namespace test;
using enum SelectionKind;

class ExplorerCommandTest : public CommandTest {
  protected:
    // What is below `parent`, as shown() tells it of a menu.
    static std::u16string tree(IExplorerCommand& parent, IShellItemArray* items) {
        std::u16string result;
        for (const Ref<IExplorerCommand>& child : children(parent)) {
            EXPCMDFLAGS flags = 0;
            EXPCMDSTATE state = ECS_HIDDEN;
            EXPECT_EQ(child->GetFlags(&flags), S_OK);
            EXPECT_EQ(child->GetState(items, TRUE, &state), S_OK);
            const std::u16string text = title(*child, items);
            EXPECT_EQ(flags == ECF_ISSEPARATOR, text == u"--");
            std::optional<std::u16string> below;
            if (flags == ECF_HASSUBCOMMANDS)
                below = tree(*child, items);
            result += shownItem(text, state == ECS_DISABLED, below);
        }
        return result;
    }

    static std::vector<host::DropItem> dropOf(const std::vector<std::optional<std::u16string>>& paths) {
        std::vector<host::DropItem> drop;
        for (const auto& path : paths)
            drop.push_back({path.value_or(u""), path.has_value()});
        return drop;
    }

    HRESULT stateOf(IExplorerCommand& command, IShellItemArray* items, BOOL slow, EXPCMDSTATE expected) {
        EXPCMDSTATE state = 77;
        const HRESULT result = command.GetState(items, slow, &state);
        EXPECT_EQ(state, expected);
        return result;
    }
};

TEST_F(ExplorerCommandTest, ShowsTheEntriesOfTheContextMenu) {
    struct Case {
        const char* name;
        SelectionKind kind;
        std::vector<std::optional<std::u16string>> paths;
        std::u16string first;
    };
    makeFile("a");
    host::setRecycleBin(u"D:\\", host::RecycleBin{4096, 2});
    for (const Case& c :
         {Case{"file", Files, {folder() + u"a"}, u"CXT_MENU_WIPE_FILE"},
          Case{"folder", Files, {folder()}, u"CXT_MENU_WIPE_FOLDER"},
          Case{"two", Files, {u"a", std::nullopt}, u"CXT_MENU_WIPE_DATA"},
          Case{"gone", Files, {u"gone"}, u""}, Case{"without a path", Files, {std::nullopt}, u""},
          Case{"drive", Drives, {u"D:\\"}, u"CXT_MENU_WIPE_DRIVE"},
          Case{"empty bin", Drives, {u"E:\\"}, u"CXT_MENU_WIPE_DRIVE"},
          Case{"two drives", Drives, {u"D:\\", u"E:\\"}, u"CXT_MENU_WIPE_DRIVE"}}) {
        SCOPED_TRACE(c.name);
        ItemArray items(c.paths);
        const Ref<IExplorerCommand> command = root(c.kind);
        const platform::MenuHandle menu = platform::createMenu();
        extension(c.kind, dropOf(c.paths))
            ->QueryContextMenu(static_cast<HMENU>(menu.get()), 0, 1, 99, CMF_NORMAL);
        // Between separators: the entries of the selection, and last the product's, which is the root.
        host::Menu classic = host::menu(menu.get());
        ASSERT_GE(classic.items.size(), 4u);
        classic.items.pop_back();
        const host::RecordedItem product = classic.items.back();
        classic.items.pop_back();
        EXPECT_EQ(tree(*command, &items),
                  shown(std::span(classic.items).subspan(1)) + shown(product.submenu->items));
        EXPECT_EQ(title(*command, &items), product.text);
        EXPECT_EQ(title(*children(*command)[0], &items), c.first);
        EXPECT_EQ(items.references(), 0u);
    }
}

TEST_F(ExplorerCommandTest, IsHiddenWhereNothingIsOffered) {
    ItemArray one({u"a"}), nothing({});
    const auto hidden = [&](IShellItemArray* items) {
        const Ref<IExplorerCommand> command = root(Files);
        return stateOf(*command, items, FALSE, ECS_HIDDEN) == S_OK;
    };
    EXPECT_TRUE(hidden(nullptr));
    EXPECT_TRUE(hidden(&nothing));
    setFlag(u"Enabled", false);
    EXPECT_TRUE(hidden(&one));
    EXPECT_TRUE(children(*root(Files)).empty());
    GUID name = {};
    EXPECT_EQ(root(Files)->GetCanonicalName(&name), S_OK);
    EXPECT_EQ(name.Data4[7], 0xFF) << "still the root";
    setFlag(u"Enabled", true);
    approve(u"another");
    EXPECT_TRUE(hidden(&one));
    approve(u"QuietOwl_NMark");
    module_.languageLoaded = false;
    EXPECT_TRUE(hidden(&one));
    setFlag(u"Enabled", false);
    module_.attach(host::moduleAt(this), kCommandTexts);
    EXPECT_TRUE(hidden(&one));
    setFlag(u"Enabled", true);
    EXPECT_EQ(stateOf(*root(Files), &one, FALSE, ECS_ENABLED), S_OK) << "loaded while it was switched off";
    fault::arm("IShellItemArray::GetCount", 1, platform::kErrorAccessDenied);
    EXPECT_TRUE(hidden(&one));
    fault::disarm();
    EXPECT_EQ(stateOf(*root(Files), &one, FALSE, ECS_ENABLED), S_OK);
}

TEST_F(ExplorerCommandTest, AsksForNothingThatItDoesNotUse) {
    ItemArray files({u"a"}), many({u"a", u"b"}), drives({u"D:\\"});
    const Ref<IExplorerCommand> file = root(Files), drive = root(Drives);
    const auto fileCommands = children(*file), driveCommands = children(*drive);
    host::setRecycleBin(u"D:\\", host::RecycleBin{0, 0});
    fault::resetCounts();
    EXPECT_EQ(stateOf(*file, &files, FALSE, ECS_ENABLED), S_OK);
    for (const Ref<IExplorerCommand>& command : fileCommands) {
        EXPECT_EQ(stateOf(*command, &files, FALSE, ECS_ENABLED), S_OK);
        EXPECT_NE(title(*command, command == fileCommands[0] ? &many : &files), u"");
    }
    EXPECT_EQ(stateOf(*drive, &drives, FALSE, ECS_ENABLED), S_OK);
    EXPECT_EQ(stateOf(*driveCommands[2], &drives, FALSE, ECS_DISABLED), E_PENDING);
    EXPECT_EQ(fault::calls("*"), fault::calls("IShellItemArray::GetCount") + fault::calls("CoTaskMemAlloc"));
    EXPECT_EQ(fileCommands[1]->Invoke(&many, nullptr), S_OK);
    EXPECT_EQ(fault::calls("IShellItemArray::GetItemAt"), 0u) << "the options take no paths";
    EXPECT_EQ(stateOf(*driveCommands[0], &drives, TRUE, ECS_ENABLED), S_OK);
    EXPECT_EQ(stateOf(*driveCommands[2], &drives, TRUE, ECS_DISABLED), S_OK) << "the bin is empty";
}

// What each command starts for paths that can be read stands in tests/life_walk/started.cpp.
TEST_F(ExplorerCommandTest, StartsNothingWithoutASelectionOrWhileOff) {
    using namespace std::string_literals;
    const Ref<IExplorerCommand> wipe = std::move(children(*root(Files))[0]);
    ItemArray some({u"a", std::nullopt, u"", std::u16string(1, u'\0'), u"b"}), none({std::nullopt});
    EXPECT_EQ(wipe->Invoke(&some, nullptr), S_OK);
    EXPECT_TRUE(lastStart().ends_with(u" -data " + owlkit::base64("a\0\0\0b\0\0\0"s)));
    EXPECT_TRUE(lastStart().starts_with(u"open|C:\\App\\nmark.exe|-cmd 101 "));
    EXPECT_EQ(wipe->Invoke(&none, nullptr), S_OK);
    EXPECT_EQ(lastStart().find(u"-data"), std::u16string::npos);
    host::shellStarts().clear();
    EXPECT_EQ(wipe->Invoke(nullptr, nullptr), E_FAIL);
    setFlag(u"Enabled", false);
    EXPECT_EQ(root(Files)->Invoke(nullptr, nullptr), E_FAIL);
    EXPECT_TRUE(host::shellStarts().empty());
}

TEST_F(ExplorerCommandTest, NamesIconsTipsAndItself) {
    const auto textOf = [&](IExplorerCommand& command, auto method) {
        return text([&](LPWSTR* target) { return (command.*method)(nullptr, target); });
    };
    std::set<std::uint8_t> names;
    for (const Ref<IExplorerCommand>& command : all(*root(Files))) {
        const std::uint32_t offset = offsetOf(*command);
        const int bitmap = offset == kNoCommand ? 0 : nmshell::command(offset).bitmap;
        const std::u16string icon = textOf(*command, &IExplorerCommand::GetIcon);
        const std::u16string tip = textOf(*command, &IExplorerCommand::GetToolTip);
        if (offset != kNoCommand) {
            EXPECT_TRUE(names.insert(static_cast<std::uint8_t>(offset)).second);
            EXPECT_EQ(platform::toHostName(tip), nmshell::command(offset).helpKey);
        }
        EXPECT_EQ(platform::toHostName(icon),
                  bitmap > 0 ? platform::toHostName(module_.file) + ",-" + std::to_string(bitmap) : "");
    }
    EXPECT_EQ(names.size(), 8u);
    EXPECT_TRUE(textOf(*root(Files), &IExplorerCommand::GetIcon).ends_with(u",-236"));
    const GUID fixed = classIdFrom(u"{E27A4C51-93B0-4D68-A5F2-7B0C18D36EFF}");
    GUID name = {};
    EXPECT_EQ(root(Files)->GetCanonicalName(&name), S_OK);
    EXPECT_TRUE(name == fixed);
    setFlag(u"Icons", false);
    EXPECT_EQ(textOf(*root(Files), &IExplorerCommand::GetIcon), u"");
}

TEST_F(ExplorerCommandTest, EnumeratesAsPromised) {
    const Ref<IExplorerCommand> command = root(Files);
    const auto commands = made<IEnumExplorerCommand>([&](void** object) {
        return command->EnumSubCommands(reinterpret_cast<IEnumExplorerCommand**>(object));
    });
    IExplorerCommand* next[12] = {};
    ULONG fetched = 7;
    EXPECT_EQ(commands->Next(2, next, nullptr), E_POINTER);
    EXPECT_EQ(commands->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(commands->Skip(8), S_OK);
    const auto copy = made<IEnumExplorerCommand>(
        [&](void** object) { return commands->Clone(reinterpret_cast<IEnumExplorerCommand**>(object)); });
    EXPECT_EQ(commands->Skip(3), S_FALSE);
    next[0] = reinterpret_cast<IExplorerCommand*>(this);
    EXPECT_EQ(commands->Next(1, next, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(next[0], nullptr);
    EXPECT_EQ(copy->Next(12, next, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2u);
    EXPECT_EQ(offsetOf(*next[1]), kAbout);
    next[0]->Release();
    next[1]->Release();
    EXPECT_EQ(copy->Reset(), S_OK);
    EXPECT_EQ(copy->Next(1, next, nullptr), S_OK);
    EXPECT_EQ(offsetOf(*next[0]), kWipeFiles);
    EXPECT_EQ(next[0]->Release(), 0u);
}

TEST_F(ExplorerCommandTest, ServesOneClassAndChecksPlacesForAnswers) {
    void* object = this;
    EXPECT_EQ(getCommandClassObject(module_, kClasses[0], IID_IClassFactory, &object),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(getCommandClassObject(module_, kCommandClass, IID_IContextMenu, &object), E_NOINTERFACE);
    EXPECT_EQ(getCommandClassObject(module_, kCommandClass, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(module_.ModuleObjectCount, 0);
    const Ref<IExplorerCommand> command = root(Files);
    EXPECT_EQ(query<IUnknown>(command, IID_IUnknown).get(), command.get());
    EXPECT_EQ(command->QueryInterface(IID_IEnumExplorerCommand, &object), E_NOINTERFACE);
    EXPECT_EQ(command->GetTitle(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(command->GetState(nullptr, TRUE, nullptr), E_POINTER);
    EXPECT_EQ(command->GetCanonicalName(nullptr), E_POINTER);
    EXPECT_EQ(command->GetFlags(nullptr), E_POINTER);
    EXPECT_EQ(command->EnumSubCommands(nullptr), E_POINTER);
}

}  // namespace
}  // namespace nmshell
