// Reading catalogues of texts beside GLib's reader of key files, which is a development package of this
// program only.
#include <benchmark/benchmark.h>
#include <glib.h>

#include <string>
#include <vector>

#include "foundation/stream/memory_stream.h"
#include "lang/interlang.h"

namespace {

struct Shape {
    const char* name;
    int languages;
    int keys;
};
constexpr Shape kShapes[] = {{"40 languages of 21 keys", 40, 21}, {"1 language of 12000 keys", 1, 12000}};

std::string language(int index) {
    return std::string("x") += std::to_string(index);
}
std::string key(int index) {
    return "CXT_MENU_ENTRY_" + std::to_string(index);
}
std::string text(int index) {
    return "Vollständig &löschen, Nummer " + std::to_string(index);
}

// A file a language, as they are shipped.
std::vector<std::string> files(const Shape& shape, bool keyFile) {
    std::vector<std::string> result;
    for (int i = 0; i < shape.languages; ++i) {
        std::string file = keyFile ? "[" : "LANG: ";
        (file += language(i)) += keyFile ? "]\n" : "\n\n";
        for (int k = 0; k < shape.keys; ++k)
            file +=
                keyFile ? key(k) + "=" + text(k) + "\n" : "KEY: " + key(k) + "\nTEXT: " + text(k) + "\n\n";
        result.push_back(std::move(file));
    }
    return result;
}

void readOurs(benchmark::State& state, Shape shape) {
    const std::vector<std::string> all = files(shape, false);
    for (auto _ : state) {
        owlkit::interlang table;
        std::uint32_t line = 0;
        table.BeginLoad();
        for (const std::string& file : all) {
            owlkit::MemoryStream stream(file.data(), file.size());
            benchmark::DoNotOptimize(table.Parse(stream, line));
        }
        table.EndLoad();
    }
}

void readGlib(benchmark::State& state, Shape shape) {
    const std::vector<std::string> all = files(shape, true);
    for (auto _ : state) {
        for (const std::string& file : all) {
            GKeyFile* catalogue = g_key_file_new();
            benchmark::DoNotOptimize(
                g_key_file_load_from_data(catalogue, file.data(), file.size(), G_KEY_FILE_NONE, nullptr));
            g_key_file_free(catalogue);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    for (const Shape& shape : kShapes) {
        const std::string name = std::string("catalogue/") + shape.name;
        benchmark::RegisterBenchmark((name + "/ours").c_str(), readOurs, shape);
        benchmark::RegisterBenchmark((name + "/GKeyFile").c_str(), readGlib, shape);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
