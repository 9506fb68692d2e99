// Any bytes and any code units in any charset under any policy: conversions fail by their policy only, grow
// by no more than it says, and what was converted without a failure comes back.
#include "testing/fuzz.h"

using fuzz::require;
using owlkit::ErrorPolicy;
using owlkit::ToNarrow;
using owlkit::ToWide;

namespace {

constexpr std::size_t kLongestHexUnit = 7;  // "x" and the digits of a surrogate pair
constexpr std::size_t kLongestUtf8Unit = 3;

void bytesToWide(const std::string& bytes, owlkit::CharsetCode charset, ErrorPolicy policy) {
    bool failed = false;
    const std::u16string wide = ToWide(bytes, charset, policy, u'?', &failed);
    require(wide.size() <= bytes.size() * (policy == ErrorPolicy::Hex ? 3 : 1));
    // An encoded surrogate pair is taken, though another one is written; the stand-in's system charset is
    // UTF-8.
    if (!failed && charset != owlkit::kCharsetUtf8 && charset != owlkit::kCharsetSystem)
        require(ToNarrow(wide, charset) == bytes);
    // Bytes that are none are kept and come back, unless an encoded surrogate looks like one of them.
    if (policy == ErrorPolicy::KeepByte && bytes.find('\xED') == bytes.npos)
        require(ToNarrow(wide, charset, policy) == bytes);
    bool stopped = false;
    const std::u16string start = ToWide(bytes, charset, ErrorPolicy::Stop, u'?', &stopped);
    require(stopped == failed);
    if (policy != ErrorPolicy::Empty)
        require(wide.starts_with(start));
    else
        require(failed ? wide.empty() : wide == start);
}

void unitsToNarrow(const std::u16string& units, owlkit::CharsetCode charset, ErrorPolicy policy) {
    bool failed = false;
    const std::string narrow = ToNarrow(units, charset, policy, '?', &failed);
    require(narrow.size() <=
            units.size() * (policy == ErrorPolicy::Hex ? kLongestHexUnit : kLongestUtf8Unit));
    if (!failed)
        require(ToWide(narrow, charset) == units);
    bool stopped = false;
    const std::string start = ToNarrow(units, charset, ErrorPolicy::Stop, '?', &stopped);
    if (policy != ErrorPolicy::KeepByte)
        require(stopped == failed);
    if (policy != ErrorPolicy::Empty && policy != ErrorPolicy::KeepByte)
        require(narrow.starts_with(start));
    if (charset == owlkit::kCharsetUtf8 && policy != ErrorPolicy::KeepByte)
        require(!failed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const owlkit::CharsetCode charset = fuzz::pick(input, owlkit::kCharsetCount - 1);
    const auto policy = fuzz::pick<ErrorPolicy>(input, 6);
    const bool asUnits = input.ConsumeBool();
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    bytesToWide(bytes, charset, policy);
    unitsToNarrow(asUnits ? fuzz::unitsOf(bytes) : fuzz::wide(bytes), charset, policy);
    return 0;
}
