// Any bytes read in all settings by any sequence of operations: a stream that holds its bytes in memory and
// one that has to be asked for every one give the same, and nobody gets more than there is or was asked for.
#include <algorithm>

#include "foundation/stream/memory_stream.h"
#include "fuzz/fuzz.h"

using fuzz::require;
using owlkit::ByteStream;

namespace {

constexpr std::uint32_t kRawLimit = 1000;

// Reads without anything at hand beforehand.
class PlainStream final : public ByteStream {
  public:
    explicit PlainStream(std::string bytes) : bytes_(std::move(bytes)) {}
    bool isReadable() const override { return true; }
    bool isWritable() const override { return false; }
    std::size_t read(void* buffer, std::size_t count) override {
        count = bytes_.copy(static_cast<char*>(buffer), count, at_);
        at_ += count;
        return count;
    }
    std::size_t write(const void*, std::size_t) override { return 0; }
    std::int64_t size() const override { return static_cast<std::int64_t>(bytes_.size()); }
    std::int64_t position() const override { return static_cast<std::int64_t>(at_); }
    bool seek(std::int64_t offset, owlkit::SeekOrigin origin) override {
        const std::int64_t target = seekTarget(offset, origin);
        if (target < 0)
            return false;
        at_ = static_cast<std::size_t>(target);
        return true;
    }
    bool setSize(std::int64_t) override { return false; }

  private:
    std::string bytes_;
    std::size_t at_ = 0;
};

struct Step {
    int operation;
    std::int64_t count;
    std::uint32_t origin;
};

// What one step gives, as text and a number; the error's text if it throws.
struct Outcome {
    std::int64_t result = 0;
    std::u16string wide;
    std::string narrow;
    std::string error;
    bool operator==(const Outcome&) const = default;
};

template <class Value, std::size_t (owlkit::Archive::*Read)(Value&)>
void scalar(ByteStream& stream, Outcome& outcome) {
    Value value{};
    outcome.result = static_cast<std::int64_t>((stream.*Read)(value));
    if constexpr (!std::is_same_v<Value, long double>)  // which has bytes without a meaning
        outcome.narrow.assign(reinterpret_cast<const char*>(&value), sizeof(value));
}

using Reader = void(ByteStream& stream, Outcome& outcome);
constexpr Reader* kReaders[] = {
    scalar<int, &ByteStream::readInt32>,
    scalar<unsigned, &ByteStream::readInt32>,
    scalar<long, &ByteStream::readInt32>,
    scalar<unsigned long, &ByteStream::readInt32>,
    scalar<short, &ByteStream::readInt16>,
    scalar<unsigned short, &ByteStream::readInt16>,
    scalar<bool, &ByteStream::readByte>,
    scalar<char, &ByteStream::readByte>,
    scalar<char16_t, &ByteStream::readUnit16>,
    scalar<owlkit::Code16, &ByteStream::readUnit16>,
    scalar<char32_t, &ByteStream::readUnit32>,
    scalar<owlkit::Code32, &ByteStream::readUnit32>,
    scalar<unsigned long long, &ByteStream::readInt64>,
    scalar<float, &ByteStream::readFloating>,
    scalar<double, &ByteStream::readFloating>,
    scalar<long double, &ByteStream::readFloating>,
};

// Copies some of the stream into another one.
void copy(ByteStream& stream, std::int64_t count, Outcome& outcome) {
    owlkit::MemoryStream target;
    outcome.result = stream.readInto(target, count);
    outcome.narrow = fuzz::view(target.data(), static_cast<std::size_t>(target.size()));
}

Outcome run(ByteStream& stream, const Step& step) {
    Outcome outcome;
    outcome.error = fuzz::error([&] {
        switch (step.operation) {
            case 0:
                outcome.result = stream.readText(outcome.wide, step.count);
                break;
            case 1:
                outcome.result = stream.readText(outcome.narrow, step.count);
                break;
            case 2:
                outcome.result = static_cast<std::int64_t>(stream.readRaw(outcome.narrow, kRawLimit));
                break;
            case 3:
                outcome.result = static_cast<std::int64_t>(stream.readRaw(outcome.wide, kRawLimit));
                break;
            case 4:
                outcome.result = stream.seek(step.count, owlkit::SeekOrigin{step.origin});
                break;
            case 5:
                outcome.result = stream.skip(step.count);
                break;
            case 6:
                outcome.result = stream.detectByteOrderMark();
                break;
            case 7:
                outcome.result = stream.detectTextEncoding(static_cast<std::size_t>(step.count & 0xFF));
                break;
            case 8:
                copy(stream, step.count, outcome);
                break;
            default:
                kReaders[step.count & 15](stream, outcome);
        }
    });
    return outcome;
}

void requireLimits(const Step& step, const Outcome& outcome, std::int64_t before, const ByteStream& stream) {
    const std::int64_t moved = stream.position() - before;
    require(stream.position() >= 0 && stream.position() <= stream.size());
    require(stream.remaining() == stream.size() - stream.position());
    if (step.operation == 0 || step.operation == 1) {
        require(step.count < 0 || outcome.result <= step.count);
        require(outcome.result <= moved);
        // One UTF-32 unit can be a pair.
        require(static_cast<std::int64_t>(outcome.wide.size()) <= 2 * outcome.result);
    } else if (step.operation == 2) {
        require(outcome.error == (outcome.error.empty() ? "" : "read string size too large"));
        require(outcome.narrow.size() <= kRawLimit);
    } else if (step.operation == 5 || step.operation == 8) {
        require(outcome.result == moved);
        require(step.count < 0 ? stream.atEnd() : moved <= step.count);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    owlkit::MemoryStream settings;
    // Up to the first value that is none of a setting's own.
    settings.setTextEncoding(owlkit::TextEncoding{input.ConsumeIntegralInRange<std::uint32_t>(0, 5)});
    settings.setByteOrder(owlkit::ByteOrder{input.ConsumeIntegralInRange<std::uint32_t>(0, 2)});
    settings.setStringTerminator(owlkit::StringTerminator{input.ConsumeIntegralInRange<std::uint32_t>(0, 6)});
    settings.setCharset(input.ConsumeIntegralInRange<std::uint32_t>(0, owlkit::kCharsetDos850));
    std::vector<Step> steps(input.ConsumeIntegralInRange<std::size_t>(1, 8));
    for (Step& step : steps)
        step = {input.ConsumeIntegralInRange(0, 9), input.ConsumeIntegralInRange(-8, 120),
                input.ConsumeIntegralInRange<std::uint32_t>(0, 3)};
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    owlkit::MemoryStream memory(bytes.data(), bytes.size(), false);
    PlainStream plain(bytes);
    memory.copySettings(settings);
    plain.copySettings(settings);
    for (const Step& step : steps) {
        const std::int64_t before = memory.position();
        const Outcome outcome = run(memory, step);
        requireLimits(step, outcome, before, memory);
        require(run(plain, step) == outcome);
        require(plain.position() == memory.position());
        require(plain.skipCheck() == memory.skipCheck());
        require(plain.settingsCompatible(memory));
    }
    require(fuzz::error([&] { memory.write("x", 1); }) == "stream is not open for writing");
    return 0;
}
