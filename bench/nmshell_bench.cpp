// What a right-click costs, natively over the stand-ins. Figures are for comparing two versions on one
// machine.
#include <benchmark/benchmark.h>

#include "contextmenu/dropped_paths.h"
#include "contextmenu/menu_insertion.h"
#include "contextmenu/menu_model.h"
#include "foundation/charset/convert.h"
#include "foundation/stream/memory_stream.h"
#include "lang/interlang.h"
#include "platform/host/com_host.h"
#include "platform/host/module_host.h"
#include "platform/host/shell_host.h"
#include "testing/handover_in_memory.h"

namespace {

std::vector<platform::host::DropItem> paths(std::int64_t count) {
    std::vector<platform::host::DropItem> items(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].path = u"C:\\Users\\somebody\\Documents\\a folder with a long name\\file " +
                        std::u16string(i % 40, u'x') + u".txt";
    return items;
}

// Linear in the number of paths, or a selection of 50,000 files is felt.
void collectPaths(benchmark::State& state) {
    void* list = platform::host::makeDropList(paths(state.range(0)));
    for (auto _ : state) {
        platform::host::DataObject data(list);
        owlkit::PathList collected;
        benchmark::DoNotOptimize(nmshell::CollectDroppedPaths(&data, collected));
    }
    state.SetComplexityN(state.range(0));
    platform::host::freeDropList(list);
}
BENCHMARK(collectPaths)->RangeMultiplier(10)->Range(1, 100000)->Complexity();

std::string languageFile(int keys) {
    std::string text = "LANG: en\n";
    for (int i = 0; i < keys; ++i)
        text +=
            "KEY: CXT_MENU_" + std::to_string(i) + "\nTEXT: Wipe &file number " + std::to_string(i) + "\n\n";
    return text;
}

void readLanguageFile(benchmark::State& state) {
    const std::string text = languageFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        owlkit::MemoryStream file(text.data(), text.size());
        owlkit::interlang table;
        std::uint32_t line = 0;
        table.BeginLoad();
        benchmark::DoNotOptimize(table.Parse(file, line));
        table.EndLoad();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(readLanguageFile)->Arg(30)->Arg(3000);

void buildAndInsertMenu(benchmark::State& state) {
    const nmshell::Selection selection{nmshell::SelectionKind::Drives, 1, {u"D:\\"}};
    nmshell::MenuFacts facts;
    facts.firstPathOnSystemDrive = false;
    facts.recycleBin = nmshell::RecycleBinState::HoldsItems;
    facts.elevation = owlkit::ElevationState::Limited;
    const owlkit::interlang texts;
    platform::host::setModuleFileName(platform::host::moduleAt(&state), u"/nmshell.dll");
    nmshell::BitmapCache bitmaps(platform::host::moduleAt(&state));
    for (auto _ : state) {
        const platform::MenuHandle menu = platform::createMenu();
        nmshell::MenuInserter(1, true, bitmaps)
            .insert(menu.get(), 0, nmshell::buildMenu(selection, facts, texts));
    }
}
BENCHMARK(buildAndInsertMenu);

void commandLineRoundTrip(benchmark::State& state) {
    nmshell::LaunchRequest request;
    request.data.assign(static_cast<std::size_t>(state.range(0)), u'ä');
    test::HandoverInMemory files;
    for (auto _ : state) {
        const std::u16string arguments = nmshell::buildArguments(0, request, files);
        const std::size_t blank = arguments.find(u' ');
        nmshell::LaunchRequest again;
        nmshell::parseArguments({arguments.substr(0, blank), arguments.substr(blank + 1)}, again, files);
        benchmark::DoNotOptimize(again);
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(commandLineRoundTrip)->Arg(60)->Arg(512)->Arg(1000000);

void utf8ToWide(benchmark::State& state) {
    std::string text;
    for (int i = 0; i < 10000; ++i)
        text += state.range(0) ? "größer " : "larger ";
    for (auto _ : state)
        benchmark::DoNotOptimize(owlkit::ToWide(text, owlkit::kCharsetUtf8));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(utf8ToWide)->Arg(0)->Arg(1);

}  // namespace
