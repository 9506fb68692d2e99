#include <array>
#include <map>
#include <set>

#include "platform/locale.h"
#include "platform/module.h"
#include "tests/life_walk/started.h"
#include "tests/life_walk/walk.h"

namespace nmshell {
namespace {

using namespace test;

using Kind = Failure::Kind;

constexpr UINT kFirstId = 100;
constexpr HRESULT kAllOffsets = kOffsets;

struct Scenario {
    const char* name;
    SelectionKind kind;
    std::vector<std::u16string> paths;
    bool memory = true;  // without, none fails that does not for one drive

    friend void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }
};

const Scenario kScenarios[] = {
    {"ThreeFiles",
     SelectionKind::Files,
     {u"/home/a b/%20 %1.txt", u"D:\\\u00C4\u65E5\xD83D\xDE00\xDC00.txt", u"E:\\Ordner ohne Ende"}},
    {"OneFile", SelectionKind::Files, {u"a file.txt"}},
    {"LongSelection",
     SelectionKind::Files,
     {u"/" + std::u16string(300, u'a'), u"D:\\b " + std::u16string(600, u'\u00DF'),
      u"E:\\" + std::u16string(250, u'\xD800')}},
    {"OneDrive", SelectionKind::Drives, {u"D:\\"}},
    {"TwoDrives", SelectionKind::Drives, {u"D:\\", u"E:\\"}, false},
    {"SystemDrive", SelectionKind::Drives, {u"C:\\"}, false},
    {"RecycleBin", SelectionKind::RecycleBin, {}},
};

struct Entry {
    std::u16string text;
    bool grayed;
    bool lacksIcon;  // though it is not grayed itself
};

// What a host sees of one right-click.
struct Outcome {
    bool loaded = false;
    bool served = false;
    HRESULT shown = 0;
    std::map<UINT, Entry> entries;  // by offset
    std::array<Invocation, kOffsets> invocations;
    std::array<std::u16string, kOffsets> help;
};

// The command entries of a menu and its submenus; what hangs in a grayed submenu cannot be chosen.
void collect(const host::Menu& menu, bool grayed, std::map<UINT, Entry>& entries) {
    for (const host::RecordedItem& item : menu.items) {
        const bool offItself = item.request.state != platform::kStateEnabled;
        if (item.submenu)
            collect(*item.submenu, grayed || offItself, entries);
        if (item.request.id == 0)
            continue;
        const bool lacksIcon = !offItself && (item.request.mask & platform::kItemBitmap) == 0;
        const Entry entry{item.text, grayed || offItself, lacksIcon};
        EXPECT_TRUE(entries.emplace(item.request.id - kFirstId, entry).second) << item.request.id << " twice";
    }
}

class RightClickWalk : public LifeWalkTest, public testing::WithParamInterface<Scenario> {
  protected:
    RightClickWalk() {
        for (const char* const name : {"langs", "temp folder"})
            std::filesystem::create_directory(name);
        setenv("TMPDIR", platform::toHostName(folder() + u"temp folder").c_str(), 1);
        makeFile("\\\\.\\D:", "volume");
        makeFile("a file.txt");
        for (const std::string language : {"de", "en"}) {
            std::string text = "LANG: " + language + "\n";
            // Few, for the walk's sake: the other texts are their keys.
            for (const std::string key : {"WIPE_DATA", "WIPE_DRIVE", "USER_TRASH", "OPTIONS", "ABOUT"})
                text += "KEY: CXT_MENU_" + key + "\nTEXT: CXT_MENU_" + key + " " + language + "\n";
            makeFile(("langs/" + language + ".lang.txt").c_str(), text);
        }
        host::setLocaleInfo(platform::kLocaleIso639LanguageName, u"de");
    }

    void run() {
        beginWorld(u"nmshell.dll");
        if (GetParam().kind != SelectionKind::Drives)  // drives have the language of the system
            set(u"Language", u"de");
        const std::set<std::string> filesBefore = files();
        const Selected selected{GetParam().paths, folder()};
        std::vector<host::DropItem> items;
        for (const std::u16string& path : selected.paths)
            items.push_back({path});
        Outcome outcome;
        {
            Drop drop(std::move(items));
            const platform::MenuHandle target = platform::createMenu();
            Module module;
            begin();
            live(module, drop, target.get(), outcome);
            end();
            collect(host::menu(target.get()), false, outcome.entries);
            EXPECT_EQ(drop.data.references(), 0u);
            EXPECT_EQ(module.ModuleObjectCount, 0);
            EXPECT_FALSE(module.recycleBinMenuLive);
            EXPECT_NE(module.texts.state(), owlkit::interlang::State::Loading);
        }
        expectNothingOpen();
        if (failure().kind == Kind::Nothing)
            base_ = outcome;
        const std::uint32_t different =
            differences(outcome, selected) | checkFiles(filesBefore, selected, outcome);
        EXPECT_EQ(different & ~mayDiffer(), 0u) << std::hex << different;
    }

    static std::set<std::string> files() {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator("."))
            names.insert(entry.path().string());
        return names;
    }

    // From loading the module to unloading it, as the shell does it: what was refused is not gone on with.
    void live(Module& module, Drop& drop, platform::MenuRef target, Outcome& outcome) {
        outcome.loaded = dllMain([&] { module.attach(host::moduleAt(this)); });
        if (outcome.loaded)
            serve(module, drop, target, outcome);
        EXPECT_TRUE(dllMain([&] { module.detach(); }));
    }

    void serve(Module& module, Drop& drop, platform::MenuRef target, Outcome& outcome) {
        const CLSID& clsid = kClasses[static_cast<int>(GetParam().kind)];
        const auto factory = obtain<IClassFactory>("DllGetClassObject", [&](void** object) {
            return getClassObject(module, clsid, IID_IClassFactory, object);
        });
        if (!factory)
            return;
        const auto init = obtain<IShellExtInit>("CreateInstance", [&](void** object) {
            return factory->CreateInstance(nullptr, IID_IShellExtInit, object);
        });
        if (!init)
            return;
        const HRESULT initialized =
            call("Initialize", [&] { return init->Initialize(nullptr, &drop.data, nullptr); });
        outcome.served = initialized == S_OK;
        EXPECT_EQ(initialized, outcome.served ? S_OK : E_FAIL);
        if (!outcome.served)
            return;
        const auto menu = query<IContextMenu>(init, IID_IContextMenu);
        outcome.shown = call("QueryContextMenu", [&] {
            return menu->QueryContextMenu(static_cast<HMENU>(target), 0, kFirstId, kFirstId + kOffsets,
                                          CMF_NORMAL);
        });
        for (std::uint32_t offset = 0; offset < kOffsets; ++offset) {
            CMINVOKECOMMANDINFO info = {};
            info.lpVerb = reinterpret_cast<LPCSTR>(UINT_PTR{offset});
            outcome.invocations[offset] =
                invoked("InvokeCommand", [&] { return menu->InvokeCommand(&info); });
            char16_t text[100] = u"";
            const HRESULT result = call("GetCommandString", [&] {
                return menu->GetCommandString(offset, GCS_HELPTEXTW, nullptr, reinterpret_cast<CHAR*>(text),
                                              100);
            });
            EXPECT_EQ(result, *text != u'\0' ? S_OK : E_FAIL);
            outcome.help[offset] = text;
        }
    }

    std::uint32_t differences(const Outcome& outcome, const Selected& selected) const {
        if (!outcome.loaded)
            return kNotLoaded;
        if (!outcome.served)
            return kNotServed;
        std::uint32_t bits = kNoEntries;
        if (outcome.shown == kAllOffsets) {
            bits = entryDifferences(outcome.entries);
        } else if (outcome.shown == 0) {
            EXPECT_TRUE(outcome.entries.empty());
        } else {
            EXPECT_EQ(outcome.shown, E_FAIL);
            EXPECT_TRUE(failure().isOfMemory());
        }
        for (std::uint32_t offset = 0; offset < kOffsets; ++offset) {
            SCOPED_TRACE(offset);
            bits |= invocationDifferences(offset, outcome, selected);
            const std::u16string& help = outcome.help[offset];
            bits |= help.empty() ? base_.help[offset].empty() ? 0u : kNoHelp
                                 : textDifference(help, base_.help[offset]);
        }
        return bits;
    }

    std::uint32_t entryDifferences(const std::map<UINT, Entry>& entries) const {
        std::uint32_t bits = entries.size() < base_.entries.size() ? kEntryLost : 0u;
        for (const auto& [offset, entry] : entries) {
            const auto found = base_.entries.find(offset);
            if (found == base_.entries.end()) {
                ADD_FAILURE() << "an entry of another kind of selection: " << offset;
                continue;
            }
            const Entry& base = found->second;
            bits |= textDifference(entry.text, base.text);
            bits |= entry.grayed && !base.grayed ? kGrayed : 0u;
            bits |= !entry.grayed && base.grayed ? kOffered : 0u;
            bits |= entry.lacksIcon && !base.lacksIcon ? kIconLost : 0u;
        }
        return bits;
    }

    // Texts are their key, a blank and the language.
    static std::uint32_t textDifference(const std::u16string& text, const std::u16string& base) {
        const std::u16string key = base.substr(0, base.find(u' '));
        if (text == base)
            return 0;
        if (text.empty())
            return kNoText;
        EXPECT_TRUE(text == key || text == key + u" en")
            << platform::toHostName(text) << " for " << platform::toHostName(base);
        return kOtherLanguage;
    }

    std::uint32_t invocationDifferences(std::uint32_t offset, const Outcome& outcome,
                                        const Selected& selected) const {
        const Invocation& invocation = outcome.invocations[offset];
        if (invocation.result != S_OK) {
            EXPECT_TRUE(failure().isOfMemory());
            EXPECT_TRUE(invocation.starts.empty());
        }
        EXPECT_LE(invocation.starts.size(), 1u);
        if (invocation.starts.empty())
            return kNotStarted;
        const std::uint32_t bits =
            checkStart(offset, invocation.starts.front(), selected, !invocation.volumeFailed);
        // Without a path these two mean the bins of all drives.
        const auto entry = outcome.entries.find(offset);
        if ((offset == 3 || offset == 5) && entry != outcome.entries.end() && !entry->second.grayed) {
            EXPECT_EQ(bits & kWithoutData, 0u);
        }
        return bits;
    }

    // What is left after every started program has read its hand-over file.
    std::uint32_t checkFiles(const std::set<std::string>& before, const Selected& selected,
                             const Outcome& outcome) const {
        const std::string whole = platform::toHostName(pathList(selected.paths));
        // One that was cut short can lie there only if it could not be deleted either, and deleting takes
        // memory here.
        const bool goesOn = failure().kind == Kind::EveryCall || failure().kind == Kind::EveryAllocation;
        bool shellFailed = false;
        for (const Invocation& invocation : outcome.invocations)
            shellFailed = shellFailed || (invocation.result == S_OK && invocation.starts.empty());
        std::uint32_t bits = 0;
        for (const std::string& name : files()) {
            if (before.contains(name))
                continue;
            const std::string content = fileBytes(name);
            EXPECT_TRUE(goesOn ? whole.starts_with(content) : content == whole) << name;
            EXPECT_TRUE(goesOn || shellFailed) << name;
            std::filesystem::remove(name);
            bits |= kHandoverLeft;
        }
        return bits;
    }

    Outcome base_;
};

TEST_P(RightClickWalk, EndsAsItMay) {
    walk(
        GetParam().name, [this] { run(); }, GetParam().memory);
}

INSTANTIATE_TEST_SUITE_P(Of, RightClickWalk, testing::ValuesIn(kScenarios),
                         [](const auto& scenario) { return std::string(scenario.param.name); });

}  // namespace
}  // namespace nmshell
