// The foundation's conversions beside those of well-known libraries, which are development packages of this
// program only.
#include <benchmark/benchmark.h>
#include <iconv.h>
#include <openssl/evp.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <charconv>

#include "foundation/charset/convert.h"
#include "foundation/codec/base64.h"
#include "foundation/stream/memory_stream.h"
#include "foundation/text/number.h"

namespace {

struct Sample {
    const char* name;
    const char* piece;
    std::size_t bytes;
};
constexpr Sample kSamples[] = {
    {"ASCII 4 KiB", "Wipe the selected items. ", 4096},
    {"Latin 4 KiB", "L’été déjà passé, où êtes-vous allés, chère Zoë? ", 4096},
    {"Cyrillic 4 KiB", "Надёжно удалить выбранные файлы ", 4096},
    {"CJK 4 KiB", "選択した項目を完全に消去します。", 4096},
    {"emoji 4 KiB", "😀😃😄😁", 4096},
    {"ASCII 1 MiB", "Wipe the selected items. ", 1 << 20},
};

std::string utf8(const Sample& sample) {
    std::string text;
    while (text.size() < sample.bytes)
        text += sample.piece;
    return text;
}
std::string latin1(std::size_t bytes) {
    std::string text;
    while (text.size() < bytes)
        text += "L'\xE9t\xE9 d\xE9j\xE0 pass\xE9, o\xF9 \xEAtes-vous all\xE9s, ch\xE8re Zo\xEB? ";
    return text;
}

void report(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

// --- To wide

void toWideOurs(benchmark::State& state, std::string text, owlkit::CharsetCode charset) {
    for (auto _ : state)
        benchmark::DoNotOptimize(owlkit::ToWide(text, charset));
    report(state, text.size());
}
void toWideIcu(benchmark::State& state, std::string text) {
    std::u16string out(text.size(), u'\0');
    for (auto _ : state) {
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t length = 0;
        u_strFromUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, text.data(),
                      static_cast<std::int32_t>(text.size()), &error);
        benchmark::DoNotOptimize(length);
    }
    report(state, text.size());
}
void toWideIcuCharset(benchmark::State& state, std::string text) {
    UErrorCode error = U_ZERO_ERROR;
    UConverter* converter = ucnv_open("windows-1252", &error);
    std::u16string out(text.size(), u'\0');
    for (auto _ : state)
        benchmark::DoNotOptimize(ucnv_toUChars(converter, out.data(), static_cast<std::int32_t>(out.size()),
                                               text.data(), static_cast<std::int32_t>(text.size()), &error));
    ucnv_close(converter);
    report(state, text.size());
}
template <class In>
void byIconv(benchmark::State& state, In text, const char* to, const char* from) {
    const iconv_t conversion = iconv_open(to, from);
    std::string out(text.size() * 4, '\0');
    for (auto _ : state) {
        char* in = reinterpret_cast<char*>(text.data());
        char* target = out.data();
        std::size_t left = text.size() * sizeof(text[0]);
        std::size_t room = out.size();
        benchmark::DoNotOptimize(iconv(conversion, &in, &left, &target, &room));
    }
    iconv_close(conversion);
    report(state, text.size() * sizeof(text[0]));
}

// --- To narrow

void toNarrowOurs(benchmark::State& state, std::u16string text, owlkit::CharsetCode charset) {
    for (auto _ : state)
        benchmark::DoNotOptimize(owlkit::ToNarrow(text, charset));
    report(state, text.size() * 2);
}
void toNarrowIcu(benchmark::State& state, std::u16string text) {
    std::string out(text.size() * 3, '\0');
    for (auto _ : state) {
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t length = 0;
        u_strToUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, text.data(),
                    static_cast<std::int32_t>(text.size()), &error);
        benchmark::DoNotOptimize(length);
    }
    report(state, text.size() * 2);
}
void toNarrowIcuCharset(benchmark::State& state, std::u16string text) {
    UErrorCode error = U_ZERO_ERROR;
    UConverter* converter = ucnv_open("windows-1252", &error);
    std::string out(text.size() * 2, '\0');
    for (auto _ : state)
        benchmark::DoNotOptimize(ucnv_fromUChars(converter, out.data(), static_cast<std::int32_t>(out.size()),
                                                 text.data(), static_cast<std::int32_t>(text.size()),
                                                 &error));
    ucnv_close(converter);
    report(state, text.size() * 2);
}

// --- Base64 and numbers

constexpr std::size_t kBase64Bytes = 48000;

void encodeOurs(benchmark::State& state) {
    const std::string bytes(kBase64Bytes, 'x');
    for (auto _ : state)
        benchmark::DoNotOptimize(owlkit::base64(bytes));
    report(state, bytes.size());
}
void encodeOpenSsl(benchmark::State& state) {
    const std::string bytes(kBase64Bytes, 'x');
    for (auto _ : state) {
        std::string text(kBase64Bytes / 3 * 4 + 1, '\0');
        benchmark::DoNotOptimize(EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                                 reinterpret_cast<const unsigned char*>(bytes.data()),
                                                 static_cast<int>(bytes.size())));
    }
    report(state, bytes.size());
}
void decodeOurs(benchmark::State& state) {
    const std::u16string text(kBase64Bytes / 3 * 4, u'T');
    for (auto _ : state)
        benchmark::DoNotOptimize(owlkit::fromBase64(text));
    report(state, kBase64Bytes);
}
void decodeOpenSsl(benchmark::State& state) {
    const std::string text(kBase64Bytes / 3 * 4, 'T');
    for (auto _ : state) {
        std::string bytes(kBase64Bytes, '\0');
        benchmark::DoNotOptimize(EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                                                 reinterpret_cast<const unsigned char*>(text.data()),
                                                 static_cast<int>(text.size())));
    }
    report(state, kBase64Bytes);
}
void formatOurs(benchmark::State& state) {
    std::int64_t value = 1;
    for (auto _ : state)
        benchmark::DoNotOptimize(owlkit::formatNumber<char>(value = value * 31 % 1000000007));
}
void formatToChars(benchmark::State& state) {
    std::int64_t value = 1;
    for (auto _ : state) {
        char digits[24];
        char* const end = std::to_chars(digits, digits + sizeof digits, value = value * 31 % 1000000007).ptr;
        benchmark::DoNotOptimize(std::string(digits, end));
    }
}

void registerAll() {
    const auto add = [](std::string name, auto function, auto... arguments) {
        benchmark::RegisterBenchmark(name.c_str(), function, arguments...);
    };
    for (const Sample& sample : kSamples) {
        const std::string narrow = utf8(sample);
        const std::u16string wide = owlkit::ToWide(narrow, owlkit::kCharsetUtf8);
        const std::string name = sample.name;
        add("UTF-8 to UTF-16/" + name + "/ours", toWideOurs, narrow, owlkit::kCharsetUtf8);
        add("UTF-8 to UTF-16/" + name + "/ICU", toWideIcu, narrow);
        add("UTF-8 to UTF-16/" + name + "/iconv", byIconv<std::string>, narrow, "UTF-16LE", "UTF-8");
        add("UTF-16 to UTF-8/" + name + "/ours", toNarrowOurs, wide, owlkit::kCharsetUtf8);
        add("UTF-16 to UTF-8/" + name + "/ICU", toNarrowIcu, wide);
        add("UTF-16 to UTF-8/" + name + "/iconv", byIconv<std::u16string>, wide, "UTF-8", "UTF-16LE");
    }
    const std::string bytes = latin1(4096);
    const std::u16string units = owlkit::ToWide(bytes, owlkit::kCharsetWindows1252);
    add("Windows-1252 to UTF-16/4 KiB/ours", toWideOurs, bytes, owlkit::kCharsetWindows1252);
    add("Windows-1252 to UTF-16/4 KiB/ICU", toWideIcuCharset, bytes);
    add("Windows-1252 to UTF-16/4 KiB/iconv", byIconv<std::string>, bytes, "UTF-16LE", "CP1252");
    add("UTF-16 to Windows-1252/4 KiB/ours", toNarrowOurs, units, owlkit::kCharsetWindows1252);
    add("UTF-16 to Windows-1252/4 KiB/ICU", toNarrowIcuCharset, units);
    add("UTF-16 to Windows-1252/4 KiB/iconv", byIconv<std::u16string>, units, "CP1252", "UTF-16LE");
    add("base64 encode/48000/ours", encodeOurs);
    add("base64 encode/48000/OpenSSL", encodeOpenSsl);
    add("base64 decode/48000/ours", decodeOurs);
    add("base64 decode/48000/OpenSSL", decodeOpenSsl);
    add("number to text/ours", formatOurs);
    add("number to text/to_chars", formatToChars);
}

}  // namespace

int main(int argc, char** argv) {
    registerAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
