// The first level of the menu with every failure: from loading the module over each method of each command to
// unloading it.
#include <map>
#include <optional>

#include "comserver/identifiers.h"
#include "explorercommand/command_class.h"
#include "foundation/path/path.h"
#include "foundation/process/folders.h"
#include "platform/host/item_array_host.h"
#include "platform/module.h"
#include "testing/extension.h"
#include "tests/life_walk/answers.h"
#include "tests/life_walk/started.h"
#include "tests/life_walk/walk.h"

namespace nmshell {
namespace {

using namespace test;

constexpr std::uint32_t kRoot = 0xFF;

// What the commands answered, by the last byte of their names.
struct Answers {
    std::u16string title;
    std::u16string icon;
    std::u16string tip;
    EXPCMDSTATE state = ECS_HIDDEN;
    std::optional<host::ShellStart> start;
};

class CommandWalk : public LifeWalkTest {
  protected:
    CommandWalk() {
        std::filesystem::create_directory("langs");
        makeFile("a file.txt");
        makeFile("langs/de.lang.txt", "LANG: de\nKEY: CXT_MENU_WIPE_FILE\nTEXT: Datei\n");
        selected_.folder = folder();
    }

    void walkThrough(const char* name, std::vector<std::u16string> paths) {
        selected_.paths = std::move(paths);
        walk(name, [this] { run(); });
    }

  private:
    void run() {
        host::resetRegistry();
        host::putText(u"HKEY_LOCAL_MACHINE\\" + std::u16string(kApprovalPath), kFileSystemClassId,
                      platform::kRegSz, kHandlerName);
        host::resetShell();
        host::resetModules();
        host::setModuleFileName(host::moduleAt(this), folder() + u"nmcommand.dll");
        owlkit::recordApplicationFolder(u"");
        different_ = 0;
        answers_.clear();
        host::ItemArray items({selected_.paths.begin(), selected_.paths.end()});
        {
            Module module;
            begin();
            const bool loaded = dllMain([&] { module.attach(host::moduleAt(this), u""); });
            if (!loaded)
                different_ |= kNotLoaded;
            else
                serve(module, items);
            EXPECT_TRUE(dllMain([&] { module.detach(); }));
            end();
            EXPECT_EQ(module.ModuleObjectCount, 0);
        }
        EXPECT_EQ(items.references(), 0u);
        EXPECT_EQ(host::openKeyCount(), 0u);
        EXPECT_EQ(host::openFileCount(), 0);
        compare();
        for (const auto& entry : std::filesystem::directory_iterator("."))
            if (entry.path().filename().string().starts_with("tfn_"))
                std::filesystem::remove(entry.path());
    }

    void serve(Module& module, host::ItemArray& items) {
        const auto factory = obtain<IClassFactory>("DllGetClassObject", [&](void** object) {
            return getCommandClassObject(
                module, {0xB1F60D94, 0x52C8, 0x4A37, {0x8E, 0x7D, 0x4C, 0x90, 0xA3, 0xD1, 0xE6, 0xF5}},
                IID_IClassFactory, object);
        });
        if (!factory)
            return;
        const auto root = obtain<IExplorerCommand>("CreateInstance", [&](void** object) {
            return factory->CreateInstance(nullptr, IID_IExplorerCommand, object);
        });
        if (!root)
            return;
        ask(*root, items);
        const auto commands = obtain<IEnumExplorerCommand>("EnumSubCommands", [&](void** object) {
            return root->EnumSubCommands(reinterpret_cast<IEnumExplorerCommand**>(object));
        });
        IExplorerCommand* next[20] = {};
        ULONG fetched = 0;
        if (commands && call("Next", [&] { return commands->Next(20, next, &fetched); }) != S_FALSE)
            different_ |= kNoEntries;
        for (ULONG i = 0; i < fetched; ++i)
            ask(*Ref<IExplorerCommand>(next[i]), items);
    }

    // The object that `work` gives; none when it fails.
    template <class Interface>
    Ref<Interface> obtain(const char* name, auto work) {
        void* object = nullptr;
        const HRESULT result = call(name, [&] { return work(&object); });
        EXPECT_EQ(object != nullptr, result == S_OK) << name;
        if (result != S_OK) {
            EXPECT_TRUE(result == CLASS_E_CLASSNOTAVAILABLE || failure().isOfMemory()) << name;
            different_ |= kNotServed;
        }
        return Ref<Interface>(static_cast<Interface*>(object));
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

    void ask(IExplorerCommand& command, host::ItemArray& items) {
        GUID name = {};
        EXPECT_EQ(command.GetCanonicalName(&name), S_OK);
        if (name.Data1 == 0)
            return;
        const std::uint32_t id = name.Data4[7];
        Answers& answers = answers_[id];
        answers.title = text("GetTitle", [&](LPWSTR* to) { return command.GetTitle(&items, to); });
        answers.icon = text("GetIcon", [&](LPWSTR* to) { return command.GetIcon(&items, to); });
        answers.tip = text("GetToolTip", [&](LPWSTR* to) { return command.GetToolTip(&items, to); });
        if (call("GetState", [&] { return command.GetState(&items, FALSE, &answers.state); }) != S_OK)
            different_ |= kNoEntries;
        const std::size_t before = host::shellStarts().size();
        const HRESULT result = call("Invoke", [&] { return command.Invoke(&items, nullptr); });
        ASSERT_LE(host::shellStarts().size(), before + (id == kRoot ? 0 : 1));
        EXPECT_TRUE(result == S_OK || host::shellStarts().size() == before);
        if (host::shellStarts().size() != before)
            answers.start = host::shellStarts().back();
    }

    void compare() {
        if (failure().kind == Failure::Kind::Nothing) {
            base_ = answers_;
            EXPECT_EQ(base_.size(), 9u);
        }
        for (const auto& [id, answers] : answers_) {
            const Answers& base = base_[id];
            if (answers.start)
                different_ |= checkStart(id, *answers.start, selected_, true);
            else if (id != kRoot)
                different_ |= kNotStarted;
            if (answers.state == ECS_HIDDEN) {
                different_ |= kNotServed;
                continue;
            }
            EXPECT_EQ(answers.state, base.state);
            different_ |= answers.icon == base.icon ? 0u : kIconLost;
            different_ |= answers.tip == base.tip ? 0u : kNoHelp;
            different_ |= answers.title == base.title ? 0u : answers.title.empty() ? kNoText : kOtherLanguage;
        }
        // Memory that runs out takes single texts and icons, and a command whose number is not known any
        // more.
        const std::uint32_t alone = failed() && failure().isOfMemory() ? kNoText | kIconLost | kNoHelp : 0u;
        EXPECT_EQ(different_ & ~(mayDiffer() | alone), 0u) << std::hex << different_;
    }

    Selected selected_;
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

}  // namespace
}  // namespace nmshell
