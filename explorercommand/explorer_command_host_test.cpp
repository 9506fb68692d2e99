#include "explorercommand/explorer_command.h"

#include <set>

#include "comserver/class_id.h"
#include "explorercommand/command_class.h"
#include "testing/commands.h"

namespace nmshell {
namespace {

using namespace test;
using enum SelectionKind;

class ExplorerCommandTest : public CommandTest {
  protected:
    // What each child of `parent` is: its title, "--" or, for a submenu, its title and the children's in
    // brackets.
    static std::string tree(IExplorerCommand& parent, IShellItemArray* items) {
        std::string result;
        for (const Ref<IExplorerCommand>& child : children(parent)) {
            EXPCMDFLAGS flags = 0;
            EXPECT_EQ(child->GetFlags(&flags), S_OK);
            result += result.empty() ? "" : " ";
            result += flags == ECF_ISSEPARATOR ? "--" : platform::toHostName(title(*child, items));
            if (flags == ECF_HASSUBCOMMANDS)
                result += "[" + tree(*child, items) + "]";
        }
        for (std::size_t at; (at = result.find("CXT_MENU_")) != std::string::npos;)
            result.erase(at, 9);
        return result;
    }

    HRESULT stateOf(IExplorerCommand& command, IShellItemArray* items, BOOL slow, EXPCMDSTATE expected) {
        EXPCMDSTATE state = 77;
        const HRESULT result = command.GetState(items, slow, &state);
        EXPECT_EQ(state, expected);
        return result;
    }
};

TEST_F(ExplorerCommandTest, ShowsTheEntriesOfTheContextMenu) {
    const std::string product = " OPTIONS STANDALONE -- UPDATE REGISTER UPGRADE -- HELP ABOUT";
    struct Case {
        const char* name;
        std::vector<std::optional<std::u16string>> paths;
        std::string wipe;
    };
    makeFile("a");
    for (const Case& c : {Case{"file", {folder() + u"a"}, "WIPE_FILE"},
                          Case{"folder", {folder()}, "WIPE_FOLDER"}, Case{"two", {u"a", u"b"}, "WIPE_DATA"},
                          Case{"two that are no files", {std::nullopt, std::nullopt}, "WIPE_DATA"}}) {
        SCOPED_TRACE(c.name);
        ItemArray items(c.paths);
        const Ref<IExplorerCommand> command = root(Files);
        EXPECT_EQ(title(*command, nullptr), u"CXT_MENU_PARENT");
        EXPECT_EQ(tree(*command, &items), c.wipe + product);
        EXPECT_EQ(items.references(), 0u);
    }
    ItemArray gone({u"gone"}), drive({u"D:\\"});
    LPWSTR none = nullptr;
    EXPECT_EQ(children(*root(Files))[0]->GetTitle(&gone, &none), E_FAIL)
        << "neither file nor folder: without text";
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(tree(*root(Drives), &drive),
              "WIPE_DRIVE CLEAN_DRIVE WIPE_DRIVE_TRASH NONE_POSTFIX[USER_TRASH "
              "ADMIN_TRASH]" +
                  product);
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
    module_.languageLoaded = true;
    fault::arm("IShellItemArray::GetCount", 1, platform::kErrorAccessDenied);
    EXPECT_TRUE(hidden(&one));
    fault::disarm();
    EXPECT_EQ(stateOf(*root(Files), &one, FALSE, ECS_ENABLED), S_OK);
}

TEST_F(ExplorerCommandTest, AnswersItsStateAtOnceOrAsksForTime) {
    ItemArray files({u"a"}), drives({u"D:\\"});
    const Ref<IExplorerCommand> file = root(Files), drive = root(Drives);
    const auto fileCommands = children(*file), driveCommands = children(*drive);
    host::setRecycleBin(u"D:\\", host::RecycleBin{0, 0});
    fault::resetCounts();
    EXPECT_EQ(stateOf(*file, &files, FALSE, ECS_ENABLED), S_OK);
    for (const Ref<IExplorerCommand>& command : fileCommands)
        EXPECT_EQ(stateOf(*command, &files, FALSE, ECS_ENABLED), S_OK);
    EXPECT_EQ(stateOf(*drive, &drives, FALSE, ECS_ENABLED), S_OK);
    EXPECT_EQ(stateOf(*driveCommands[2], &drives, FALSE, ECS_DISABLED), E_PENDING);
    EXPECT_EQ(fault::calls("*"), fault::calls("IShellItemArray::GetCount"));
    EXPECT_EQ(stateOf(*driveCommands[0], &drives, TRUE, ECS_ENABLED), S_OK);
    EXPECT_EQ(stateOf(*driveCommands[2], &drives, TRUE, ECS_DISABLED), S_OK) << "the bin is empty";
}

TEST_F(ExplorerCommandTest, StartsWhatTheContextMenuStarts) {
    const std::u16string longName(600, u'n');
    struct Case {
        const char* name;
        SelectionKind kind;
        std::vector<std::optional<std::u16string>> paths;
    };
    for (const Case& c : {Case{"file", Files, {u"C:\\\u00C4 %20.txt"}},
                          Case{"no file among them", Files, {u"a", std::nullopt, u"b"}},
                          Case{"long", Files, {longName, u"b\xD800"}}, Case{"drive", Drives, {u"D:\\"}}}) {
        std::vector<host::DropItem> drop;
        for (const auto& path : c.paths)
            drop.push_back({path.value_or(u""), path.has_value()});
        ItemArray items(c.paths);
        const Ref<IContextMenu> menu = extension(c.kind, drop);
        for (const Ref<IExplorerCommand>& command : all(*root(c.kind))) {
            const std::uint32_t offset = offsetOf(*command);
            SCOPED_TRACE(c.name + std::to_string(offset));
            if (offset == kNoCommand) {
                EXPECT_EQ(command->Invoke(&items, nullptr), E_FAIL);
                continue;
            }
            module_.handover = HandoverFiles(u".nmark");
            EXPECT_EQ(invoke(menu, offset), S_OK);
            const std::u16string classic = lastStart();
            const std::u16string handedOver = handover(classic);
            module_.handover = HandoverFiles(u".nmark");
            EXPECT_EQ(command->Invoke(&items, nullptr), S_OK);
            EXPECT_EQ(lastStart(), classic);
            EXPECT_EQ(handover(lastStart()), handedOver);
        }
        EXPECT_EQ(items.references(), 0u);
    }
    const std::size_t starts = host::shellStarts().size();
    const Ref<IExplorerCommand> wipe = std::move(children(*root(Files))[0]);
    EXPECT_EQ(wipe->Invoke(nullptr, nullptr), E_FAIL);
    setFlag(u"Enabled", false);
    EXPECT_EQ(root(Files)->Invoke(nullptr, nullptr), E_FAIL);
    EXPECT_EQ(host::shellStarts().size(), starts);
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
            EXPECT_EQ(tip, nmshell::command(offset).helpKey);
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
    EXPECT_EQ(commands->Skip(8), S_OK);
    const auto copy = made<IEnumExplorerCommand>(
        [&](void** object) { return commands->Clone(reinterpret_cast<IEnumExplorerCommand**>(object)); });
    EXPECT_EQ(commands->Skip(3), S_FALSE);
    EXPECT_EQ(commands->Next(1, next, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
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
