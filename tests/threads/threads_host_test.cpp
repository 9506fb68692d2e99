// Two windows of the shell are two threads. Under ThreadSanitizer this also shows that the threads share
// nothing that is written but what tsan.supp lists.
#include <thread>

#include "testing/commands.h"

#ifdef __SANITIZE_THREAD__
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
    return "suppressions=" NMSHELL_TSAN_SUPPRESSIONS;
}
#endif

namespace nmshell {
namespace {

using namespace test;

using namespace std::string_literals;
using enum SelectionKind;

constexpr int kRightClicks = 200;

class ThreadsTest : public ExtensionTest {
  protected:
    // A count that two threads change at once may lose a step; that is known and not what is tested here.
    ~ThreadsTest() override { module_.ModuleObjectCount = 0; }

    // One right-click from the class object to the release, a long selection being chosen at its end.
    void rightClick(SelectionKind kind) {
        const Ref<IContextMenu> menu = extension(kind, {{u"D:\\"}, {std::u16string(600, u'p')}});
        const platform::MenuHandle target = platform::createMenu();
        const auto used = menu->QueryContextMenu(static_cast<HMENU>(target.get()), 0, 1, 100, CMF_NORMAL);
        EXPECT_TRUE(used == 15 || used == 0)
            << std::hex << used;  // nothing while a Recycle Bin menu is there
        for (const host::RecordedItem& item : host::menu(target.get()).items)
            EXPECT_NE(item.request.bitmap != nullptr && host::bitmapId(item.request.bitmap) == 0, true);
        for (int i = 0; i < 50; ++i) {  // as the mouse moves over the entries
            char16_t text[100] = u"";
            ASSERT_EQ(help(menu, 14, text, 100), S_OK);
            ASSERT_STREQ(platform::toHostName(text).c_str(), "Ueber Nullmark");
        }
        EXPECT_EQ(invoke(menu, 0), S_OK);
    }
};

TEST_F(ThreadsTest, RightClickWithTheLanguageUnchanged) {
    makeFile("langs/long.lang.txt", "KEY: CXT_MENU_ABOUT\nLANG: Plattdeutsch\nTEXT: Ueber Nullmark\n");
    set(u"Language", u"Plattdeutsch");
    module_.attach(host::moduleAt(this));
    factory(Files);  // the first request after loading takes the primary language away
    std::thread other([&] {
        for (int i = 0; i < kRightClicks; ++i)
            rightClick(i % 10 == 9 ? RecycleBin : Drives);
    });
    for (int i = 0; i < kRightClicks; ++i)
        rightClick(i % 10 == 9 ? RecycleBin : Files);
    other.join();
    module_.detach();
}

class CommandThreadsTest : public CommandTest {
  protected:
    // What a shell asks each of these commands, whichever thread made them.
    static void askEach(const std::vector<Ref<IExplorerCommand>>& commands, IShellItemArray* items) {
        for (const Ref<IExplorerCommand>& command : commands) {
            SCOPED_TRACE(offsetOf(*command));
            EXPCMDFLAGS flags = ECF_DEFAULT;
            EXPCMDSTATE state = ECS_HIDDEN;
            EXPECT_EQ(command->GetFlags(&flags), S_OK);
            EXPECT_EQ(command->GetState(items, TRUE, &state), S_OK);
            EXPECT_NE(state, ECS_HIDDEN);
            EXPECT_NE(title(*command, items), u"");
            for (const auto get : {&IExplorerCommand::GetIcon, &IExplorerCommand::GetToolTip})
                text([&](LPWSTR* given) { return (command.get()->*get)(items, given); });
        }
    }
};

// Two threads with the same commands, which nothing is suppressed for.
TEST_F(CommandThreadsTest, AskAndChooseTheSameCommands) {
    makeFile("langs/long.lang.txt", "KEY: CXT_MENU_WIPE_DATA\nLANG: Plattdeutsch\nTEXT: Wegputzen\n");
    set(u"Language", u"Plattdeutsch");
    module_.attach(host::moduleAt(this), kCommandTexts);
    const Ref<IExplorerCommand> command = root(Files), drive = root(Drives);
    const auto shared = all(*command), sharedOfDrive = all(*drive);
    const auto use = [&](char16_t letter) {
        const std::u16string path(600, letter);
        for (int i = 0; i < kRightClicks / 4; ++i) {
            ItemArray items({path, u"b"});
            ItemArray one({u"D:\\"});
            askEach(all(*root(Files)), &items);
            EXPECT_EQ(children(*command).size(), 10u);
            askEach(shared, &items);
            askEach(sharedOfDrive, &one);
            EXPECT_EQ(title(*shared[0], &items), u"Wegputzen");
            EXPECT_EQ(shared[0]->Invoke(&items, nullptr), S_OK);
        }
    };
    std::thread other(use, u'q');
    use(u'p');
    other.join();
    EXPECT_EQ(module_.handover.makeHandoverFileName(),
              handoverFileName(2 * (kRightClicks / 4) + 1, u".nmark"));
    module_.detach();
}

}  // namespace
}  // namespace nmshell
