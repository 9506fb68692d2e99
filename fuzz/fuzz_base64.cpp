// Base64: any text is decoded or refused with "parse error", the same in both widths and by count; a text
// that passes strictly says what it decodes to in letters that encode the same.
#include <algorithm>
#include <optional>

#include "foundation/codec/base64.h"
#include "testing/fuzz.h"

using fuzz::require;
using owlkit::Base64Alphabet;
using owlkit::Base64Codec;
using owlkit::Base64Strays;
using owlkit::MemoryStream;

namespace {

std::string encode(const std::string& bytes, Base64Codec codec) {
    MemoryStream source(bytes.data(), bytes.size());
    std::string text;
    require(codec.encodeToString(source, text) == text.size());
    return text;
}

struct Decoded {
    std::string bytes, error;
    std::int64_t taken = 0;
    bool operator==(const Decoded&) const = default;
};

// What the first `count` characters decode to.
Decoded decode(const std::string& text, Base64Codec codec, std::size_t count) {
    MemoryStream source(text.data(), text.size()), target;
    Decoded result;
    std::int64_t written = 0;
    result.error =
        test::errorOf([&] { written = codec.decode(source, target, static_cast<std::int64_t>(count)); });
    require(result.error.empty() ? written == target.size() : result.error == "parse error");
    result.bytes = fuzz::bytesOf(target);
    result.taken = source.position();
    require(result.bytes.size() <= count * 3 / 4 + 1);
    return result;
}

template <class Text>
void requireFromString(const Text& text, Base64Codec codec, const Decoded& decoded) {
    MemoryStream target;
    require(test::errorOf([&] { codec.decodeFromString(text, target); }) == decoded.error);
    require(fuzz::bytesOf(target) == decoded.bytes);
}

void decodeAny(const std::string& text, Base64Alphabet alphabet, Base64Strays strays, std::size_t count) {
    const Base64Codec codec(0, alphabet, strays);
    const Decoded decoded = decode(text, codec, text.size());
    require(strays != Base64Strays::Ignore || decoded.error.empty());
    requireFromString(text, codec, decoded);
    // A wide text with a character that no alphabet has is refused as a whole.
    const bool ascii = std::ranges::all_of(text, [](char c) { return c >= 0; });
    if (ascii)
        requireFromString(fuzz::widened(text), codec, decoded);
    if (strays == Base64Strays::Refuse && decoded.error.empty()) {
        // All letters but the last, whose low bits may be lost, are those of the bytes.
        const std::string letters = text.substr(0, text.find('='));
        const std::string again = encode(decoded.bytes, Base64Codec(0, alphabet));
        require(again.size() + 1 >= letters.size());
        require(letters.empty() || again.starts_with(letters.substr(0, letters.size() - 1)));
    }
    if (strays == Base64Strays::Refuse && alphabet == Base64Alphabet::Standard && ascii) {
        // Of the padding that ends a text the codec takes the first character.
        const bool whole = decoded.error.empty() &&
                           text.find_first_not_of('=', static_cast<std::size_t>(decoded.taken)) == text.npos;
        require(owlkit::fromBase64(fuzz::widened(text)) ==
                (whole ? std::optional(decoded.bytes) : std::nullopt));
    }
    const std::string part = text.substr(0, count);
    require(decode(text, codec, part.size()) == decode(part, codec, part.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const auto alphabet = input.PickValueInArray({Base64Alphabet::Standard, Base64Alphabet::Url});
    const auto strays = fuzz::pick<Base64Strays>(input, 2);
    const std::size_t count = input.ConsumeIntegral<std::uint8_t>();
    decodeAny(input.ConsumeRemainingBytesAsString(), alphabet, strays, count);
    return 0;
}
