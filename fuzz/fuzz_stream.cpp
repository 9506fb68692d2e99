// Any bytes read in all settings by any sequence of operations: a stream that holds its bytes in memory and
// one that has to be asked for every one give the same, and nobody gets more than there is or was asked for.
#include "testing/fuzz.h"
#include "testing/plain_stream.h"

using fuzz::require;
using owlkit::ByteStream;

namespace {

constexpr std::uint32_t kRawLimit = 1000;

struct Step {
    std::uint32_t operation;
    std::int64_t count;
    std::uint32_t origin;
};

// What one step gives, as text and a number; the error's text if it throws.
struct Outcome {
    std::int64_t result = 0;
    std::u16string wide;
    std::string narrow, error;
    bool operator==(const Outcome&) const = default;
};

// Copies some of the stream into another one.
std::int64_t copy(ByteStream& stream, std::int64_t count, Outcome& outcome) {
    owlkit::MemoryStream target;
    const std::int64_t moved = stream.readInto(target, count);
    outcome.narrow = fuzz::bytesOf(target);
    return moved;
}

constexpr std::uint32_t kReadText = 0, kSkip = 5, kCopy = 8;
constexpr std::int64_t (*kOperations[])(ByteStream&, const Step&, Outcome&) = {
    [](auto& s, auto& step, auto& out) { return s.readText(out.wide, step.count); },
    [](auto& s, auto& step, auto& out) { return s.readText(out.narrow, step.count); },
    [](auto& s, auto&, auto& out) { return std::int64_t(s.readRaw(out.narrow, kRawLimit)); },
    [](auto& s, auto&, auto& out) { return std::int64_t(s.readRaw(out.wide, kRawLimit)); },
    [](auto& s, auto& step, auto&) {
        return std::int64_t{s.seek(step.count, owlkit::SeekOrigin{step.origin})};
    },
    [](auto& s, auto& step, auto&) { return s.skip(step.count); },
    [](auto& s, auto&, auto&) { return std::int64_t{s.detectByteOrderMark()}; },
    [](auto& s, auto& step, auto&) {
        return std::int64_t{s.detectTextEncoding(static_cast<std::size_t>(step.count & 0xFF))};
    },
    [](auto& s, auto& step, auto& out) { return copy(s, step.count, out); },
};

Outcome run(ByteStream& stream, const Step& step) {
    Outcome outcome;
    outcome.error =
        test::errorOf([&] { outcome.result = kOperations[step.operation](stream, step, outcome); });
    return outcome;
}

void requireLimits(const Step& step, const Outcome& outcome, std::int64_t before, const ByteStream& stream) {
    const std::int64_t moved = stream.position() - before;
    require(stream.position() >= 0 && stream.position() <= stream.size());
    require(stream.remaining() == stream.size() - stream.position());
    require(outcome.error.empty() || outcome.error == "read string size too large");
    if (step.operation <= kReadText + 1) {
        require(step.count < 0 || outcome.result <= step.count);
        require(outcome.result <= moved);
        // One UTF-32 unit can be a pair.
        require(static_cast<std::int64_t>(outcome.wide.size()) <= 2 * outcome.result);
    } else if (step.operation == kSkip || step.operation == kCopy) {
        require(outcome.result == moved);
        require(step.count < 0 ? stream.atEnd() : moved <= step.count);
    } else {
        require(outcome.narrow.size() <= kRawLimit);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const owlkit::StreamSettings settings = fuzz::settings(input);
    std::vector<Step> steps(input.ConsumeIntegralInRange<std::size_t>(1, 8));
    for (Step& step : steps)
        step = {fuzz::pick(input, 8), input.ConsumeIntegralInRange(-8, 120), fuzz::pick(input, 3)};
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    owlkit::MemoryStream memory(bytes.data(), bytes.size(), false);
    test::PlainStream plain(bytes);
    memory.setSettings(settings);
    plain.setSettings(settings);
    for (const Step& step : steps) {
        const std::int64_t before = memory.position();
        const Outcome outcome = run(memory, step);
        requireLimits(step, outcome, before, memory);
        require(run(plain, step) == outcome);
        require(plain.position() == memory.position());
        require(plain.skipCheck() == memory.skipCheck());
        require(plain.settingsCompatible(memory));
    }
    return 0;
}
