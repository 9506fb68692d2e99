// The first level of the menu with every failure: from loading the module over each method of each command to
// unloading it.
#include <map>

#include "comserver/class_factory.h"
#include "explorercommand/command_class.h"
#include "explorercommand/explorer_command.h"
#include "foundation/path/path.h"
#include "testing/commands.h"
#include "tests/life_walk/started.h"
#include "tests/life_walk/walk.h"

namespace nmshell {
namespace {

using namespace test;

constexpr std::uint32_t kBin = 0xFE;  // the submenu of the Recycle Bin
constexpr std::uint32_t kRoot = 0xFF;

// What the commands answered, by the last byte of their names.
struct Answers {
    std::u16string title;
    std::u16string icon;
    std::u16string tip;
    HRESULT stateResults[2] = {S_OK, S_OK};  // at once, and where it may be slow
    EXPCMDSTATE states[2] = {ECS_HIDDEN, ECS_HIDDEN};
    Invocation invocation;
};

class CommandWalk : public LifeWalkTest {
  protected:
    CommandWalk() {
        std::filesystem::create_directory("langs");
        makeFile("a file.txt");
        makeFile("\\\\.\\D:", "volume");
        makeFile("langs/de.lang.txt", "LANG: de\nKEY: CXT_MENU_WIPE_FILE\nTEXT: Datei\n");
        selected_.folder = folder();
    }

    void walkThrough(const char* name, std::vector<std::u16string> paths,
                     SelectionKind kind = SelectionKind::Files) {
        selected_.paths = std::move(paths);
        kind_ = kind;
        walk(name, [this] { run(); });
    }

  private:
    void run() {
        beginWorld(u"nmcommand.dll");
        different_ = 0;
        answers_.clear();
        host::ItemArray items({selected_.paths.begin(), selected_.paths.end()});
        {
            Module module;
            begin();
            const bool loaded = dllMain([&] { module.attach(host::moduleAt(this), kCommandTexts); });
            if (!loaded)
                different_ |= kNotLoaded;
            else
                serve(module, items);
            EXPECT_TRUE(dllMain([&] { module.detach(); }));
            end();
            EXPECT_EQ(module.ModuleObjectCount, 0);
        }
        EXPECT_EQ(items.references(), 0u);
        expectNothingOpen();
        compare();
        for (const auto& entry : std::filesystem::directory_iterator("."))
            if (entry.path().filename().string().starts_with("tfn_"))
                std::filesystem::remove(entry.path());
    }

    void serve(Module& module, host::ItemArray& items) {
        const auto factory = obtain<IClassFactory>("DllGetClassObject", [&](void** object) {
            if (kind_ != SelectionKind::Files)  // Windows has no place for a class of these
                return makeObject<ClassFactory<ExplorerCommand>>(IID_IClassFactory, object, module, kind_);
            return getCommandClassObject(module, kCommandClass, IID_IClassFactory, object);
        });
        if (!factory)
            return;
        const auto root = obtain<IExplorerCommand>("CreateInstance", [&](void** object) {
            return factory->CreateInstance(nullptr, IID_IExplorerCommand, object);
        });
        if (root)
            ask(*root, items);
    }

    void ask(IExplorerCommand& command, host::ItemArray& items) {
        GUID name = {};
        EXPCMDFLAGS flags = ECF_DEFAULT;
        EXPECT_EQ(call("GetCanonicalName", [&] { return command.GetCanonicalName(&name); }), S_OK);
        EXPECT_EQ(call("GetFlags", [&] { return command.GetFlags(&flags); }), S_OK);
        EXPECT_EQ(flags == ECF_ISSEPARATOR, name.Data1 == 0);
        if (flags != ECF_ISSEPARATOR)
            askEntry(command, items, name.Data4[7]);
        if (flags == ECF_HASSUBCOMMANDS)
            return askBelow(command, items);
        IEnumExplorerCommand* none = nullptr;
        EXPECT_EQ(call("EnumSubCommands", [&] { return command.EnumSubCommands(&none); }), E_NOTIMPL);
        EXPECT_EQ(none, nullptr);
    }

    // All commands come from a copy whose original has gone past them.
    void askBelow(IExplorerCommand& command, host::ItemArray& items) {
        const auto commands = obtain<IEnumExplorerCommand>("EnumSubCommands", [&](void** object) {
            return command.EnumSubCommands(reinterpret_cast<IEnumExplorerCommand**>(object));
        });
        if (!commands)
            return;
        EXPECT_EQ(call("Skip", [&] { return commands->Skip(20); }), S_FALSE);
        const auto copy = obtain<IEnumExplorerCommand>("Clone", [&](void** object) {
            return commands->Clone(reinterpret_cast<IEnumExplorerCommand**>(object));
        });
        if (!copy)
            return;
        EXPECT_EQ(call("Reset", [&] { return copy->Reset(); }), S_OK);
        IExplorerCommand* next[20] = {};
        ULONG fetched = 0;
        if (call("Next", [&] { return copy->Next(20, next, &fetched); }) != S_FALSE)
            different_ |= kNoEntries;
        for (ULONG i = 0; i < fetched; ++i)
            ask(*Ref<IExplorerCommand>(next[i]), items);
    }

    template <class Interface>
    Ref<Interface> obtain(const char* name, auto work) {
        auto object = LifeWalkTest::obtain<Interface>(name, work);
        different_ |= object ? 0u : kNotServed;
        return object;
    }

    std::u16string text(const char* name, auto get) {
        LPWSTR given = nullptr;
        const HRESULT result = call(name, [&] { return get(&given); });
        EXPECT_EQ(given != nullptr, result == S_OK) << name;
        if (result == E_OUTOFMEMORY && failure().isOfMemory())
            different_ |= kNoEntries;
        const std::u16string copy(given ? given : u"");
        CoTaskMemFree(given);
        return copy;
    }

    void askEntry(IExplorerCommand& command, host::ItemArray& items, std::uint32_t id) {
        Answers& answers = answers_[id];
        answers.title = text("GetTitle", [&](LPWSTR* to) { return command.GetTitle(&items, to); });
        answers.icon = text("GetIcon", [&](LPWSTR* to) { return command.GetIcon(&items, to); });
        answers.tip = text("GetToolTip", [&](LPWSTR* to) { return command.GetToolTip(&items, to); });
        for (const BOOL slow : {FALSE, TRUE})
            answers.stateResults[slow] =
                call("GetState", [&] { return command.GetState(&items, slow, &answers.states[slow]); });
        answers.invocation = invoked("Invoke", [&] { return command.Invoke(&items, nullptr); });
        const std::size_t starts = answers.invocation.starts.size();
        EXPECT_LE(starts, id == kRoot ? 0u : 1u);
        EXPECT_TRUE(answers.invocation.result == S_OK || starts == 0);
    }

    void compare() {
        if (failure().kind == Failure::Kind::Nothing) {
            base_ = answers_;
            EXPECT_EQ(base_.size(), kind_ == SelectionKind::Files ? 9u : 13u);
        }
        for (const auto& [id, answers] : answers_) {
            const Answers& base = base_[id];
            const Invocation& invocation = answers.invocation;
            if (!invocation.starts.empty())
                different_ |= checkStart(id, invocation.starts[0], selected_, !invocation.volumeFailed);
            else if (!base.invocation.starts.empty())
                different_ |= kNotStarted;
            const std::uint32_t states = stateDifference(answers, base);
            different_ |= states;
            if ((states & kNotServed) != 0)
                continue;
            // The Recycle Bin's text tells why it cannot be chosen.
            const std::uint32_t otherText = id == kBin ? kGrayed : kOtherLanguage;
            different_ |= answers.icon == base.icon ? 0u : kIconLost;
            different_ |= answers.tip == base.tip ? 0u : kNoHelp;
            different_ |= answers.title == base.title ? 0u : answers.title.empty() ? kNoText : otherText;
        }
        // Memory that runs out takes single texts and icons, and a command whose number is not known any
        // more. A drive without a path has no Recycle Bin.
        std::uint32_t alone = failed() && failure().isOfMemory() ? kNoText | kIconLost | kNoHelp : 0u;
        alone |= failed() && kind_ == SelectionKind::Drives ? kGrayed : 0u;
        EXPECT_EQ(different_ & ~(mayDiffer() | alone), 0u) << std::hex << different_;
    }

    std::uint32_t stateDifference(const Answers& answers, const Answers& base) const {
        std::uint32_t bits = 0;
        for (const BOOL slow : {FALSE, TRUE}) {
            const EXPCMDSTATE state = answers.states[slow];
            if (answers.stateResults[slow] == E_OUTOFMEMORY && failure().isOfMemory()) {
                bits |= kNoEntries;
            } else if (state == ECS_HIDDEN) {
                bits |= kNotServed;
            } else {
                EXPECT_EQ(answers.stateResults[slow], base.stateResults[slow]);
                bits |= state == base.states[slow] ? 0u : state == ECS_DISABLED ? kGrayed : kOffered;
            }
        }
        return bits;
    }

    Selected selected_;
    SelectionKind kind_ = SelectionKind::Files;
    std::uint32_t different_ = 0;
    std::map<std::uint32_t, Answers> answers_, base_;
};

TEST_F(CommandWalk, OneFile) {
    walkThrough("one file", {folder() + u"a file.txt"});
}

TEST_F(CommandWalk, LongSelection) {
    walkThrough("long selection",
                {u"D:\\b " + std::u16string(600, u'\u00DF'), u"E:\\" + std::u16string(50, u'\xD800')});
}

// What facts decide, though Windows shows no commands for drives.
TEST_F(CommandWalk, OneDrive) {
    walkThrough("one drive", {u"D:\\"}, SelectionKind::Drives);
}

}  // namespace
}  // namespace nmshell
