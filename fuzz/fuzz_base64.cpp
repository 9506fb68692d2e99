// Base64: every byte string comes back through both alphabets and any line length, and any text is decoded or
// refused with "parse error", the same in both widths and by count; a text that passes strictly says what it
// decodes to.
#include <algorithm>
#include <optional>

#include "foundation/codec/base64.h"
#include "foundation/stream/memory_stream.h"
#include "fuzz/fuzz.h"

using fuzz::require;
using owlkit::Base64Alphabet;
using owlkit::Base64Codec;
using owlkit::Base64Strays;

namespace {

std::string content(const owlkit::MemoryStream& stream) {
    return std::string(fuzz::view(stream.data(), static_cast<std::size_t>(stream.size())));
}

std::string encode(const std::string& bytes, std::int32_t lineLength, Base64Alphabet alphabet,
                   std::int64_t count = -1) {
    owlkit::MemoryStream source(bytes.data(), bytes.size());
    std::string text;
    require(Base64Codec(lineLength, alphabet).encodeToString(source, text, count) == text.size());
    return text;
}

void roundTrip(const std::string& bytes, std::int32_t lineLength, Base64Alphabet alphabet,
               std::size_t count) {
    const std::string text = encode(bytes, lineLength, alphabet);
    owlkit::MemoryStream source(bytes.data(), bytes.size());
    std::u16string wide;
    Base64Codec(lineLength, alphabet).encodeToString(source, wide);
    require(wide == std::u16string(text.begin(), text.end()));
    const bool broken = text.find('\n') != std::string::npos;
    require(!broken || (lineLength > 0 && alphabet == Base64Alphabet::Standard));
    owlkit::MemoryStream decoded;
    Base64Codec(0, alphabet, broken ? Base64Strays::IgnoreLineBreaks : Base64Strays::Refuse)
        .decodeFromString(text, decoded);
    require(content(decoded) == bytes);
    require(encode(bytes, lineLength, alphabet, static_cast<std::int64_t>(count)) ==
            encode(bytes.substr(0, count), lineLength, alphabet));
}

struct Decoded {
    std::string bytes;
    std::string error;
    bool operator==(const Decoded&) const = default;
};

// What the first `count` characters decode to; `rest` is what was not taken of them.
Decoded decode(const std::string& text, Base64Codec codec, std::size_t count, std::size_t& rest) {
    owlkit::MemoryStream source(text.data(), text.size());
    owlkit::MemoryStream target;
    Decoded result;
    std::int64_t written = 0;
    result.error =
        fuzz::error([&] { written = codec.decode(source, target, static_cast<std::int64_t>(count)); });
    require(result.error.empty() || result.error == "parse error");
    result.bytes = content(target);
    require(!result.error.empty() || written == target.size());
    require(result.bytes.size() <= count * 3 / 4 + 1);
    rest = count - static_cast<std::size_t>(source.position());
    return result;
}

template <class Text>
Decoded decodeString(const Text& text, Base64Codec codec) {
    owlkit::MemoryStream target;
    Decoded result;
    result.error = fuzz::error([&] { codec.decodeFromString(text, target); });
    result.bytes = content(target);
    return result;
}

// All letters but the last, whose low bits may be lost, are those of the bytes.
void requireLetters(const std::string& text, const std::string& bytes, Base64Alphabet alphabet) {
    const std::string letters = text.substr(0, text.find('='));
    const std::string again = encode(bytes, 0, alphabet);
    require(again.size() + 1 >= letters.size());
    require(letters.empty() || again.starts_with(letters.substr(0, letters.size() - 1)));
}

void decodeAny(const std::string& text, Base64Alphabet alphabet, Base64Strays strays, std::size_t count) {
    const Base64Codec codec(0, alphabet, strays);
    std::size_t rest = 0;
    const Decoded decoded = decode(text, codec, text.size(), rest);
    require(strays != Base64Strays::Ignore || decoded.error.empty());
    require(decodeString(text, codec) == decoded);
    // A wide text with a character that no alphabet has is refused as a whole.
    const std::u16string wide = fuzz::wide(text);
    const bool ascii = std::ranges::all_of(text, [](char c) { return c >= 0; });
    if (ascii)
        require(decodeString(wide, codec) == decoded);
    if (strays == Base64Strays::Refuse && decoded.error.empty())
        requireLetters(text, decoded.bytes, alphabet);
    if (strays == Base64Strays::Refuse && alphabet == Base64Alphabet::Standard && ascii) {
        // Of the padding that ends a text the codec takes the first character.
        const bool whole =
            decoded.error.empty() && text.find_first_not_of('=', text.size() - rest) == text.npos;
        require(owlkit::fromBase64(wide) == (whole ? std::optional(decoded.bytes) : std::nullopt));
    }
    const std::size_t part = std::min(count, text.size());
    std::size_t partRest = 0;
    const Decoded partly = decode(text, codec, part, rest);
    require(partly == decode(text.substr(0, part), codec, part, partRest) && rest == partRest);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::int32_t lineLength = input.ConsumeIntegral<std::int8_t>();
    const auto alphabet = input.PickValueInArray({Base64Alphabet::Standard, Base64Alphabet::Url});
    const auto strays = static_cast<Base64Strays>(input.ConsumeIntegralInRange<std::uint32_t>(0, 2));
    const std::size_t count = input.ConsumeIntegral<std::uint8_t>();
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    roundTrip(bytes, lineLength, alphabet, count);
    require(owlkit::base64(bytes) == fuzz::wide(encode(bytes, 0, Base64Alphabet::Standard)));
    decodeAny(bytes, alphabet, strays, count);
    return 0;
}
