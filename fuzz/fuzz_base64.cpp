// Base64: every byte string comes back through both alphabets and any line length, and any text is decoded or
// refused with "parse error", the same in both widths; a text that passes strictly says what it decodes to.
#include "fuzz/fuzz.h"

#include "foundation/codec/base64.h"
#include "foundation/stream/memory_stream.h"

using fuzz::require;
using owlkit::Base64Codec;

namespace {

std::string content(const owlkit::MemoryStream& stream) {
    return std::string(fuzz::view(stream.data(), static_cast<std::size_t>(stream.size())));
}

std::string encode(const std::string& bytes, std::int32_t lineLength, std::uint32_t alphabet) {
    owlkit::MemoryStream source(bytes.data(), bytes.size());
    std::string text;
    require(Base64Codec(lineLength, alphabet).encodeToString(source, text) == text.size());
    return text;
}

void roundTrip(const std::string& bytes, std::int32_t lineLength, std::uint32_t alphabet) {
    const std::string text = encode(bytes, lineLength, alphabet);
    owlkit::MemoryStream source(bytes.data(), bytes.size());
    std::u16string wide;
    Base64Codec(lineLength, alphabet).encodeToString(source, wide);
    require(wide == std::u16string(text.begin(), text.end()));
    const bool broken = text.find('\n') != std::string::npos;
    require(!broken || (lineLength > 0 && alphabet == owlkit::kBase64Standard));
    owlkit::MemoryStream decoded;
    Base64Codec(0, alphabet, broken ? owlkit::kIgnoreLineBreaks : owlkit::kRefuseStrays)
        .decodeFromString(text, decoded);
    require(content(decoded) == bytes);
}

// What `text` decodes to, or the error.
template <class Text>
std::string decode(const Text& text, std::uint32_t alphabet, std::uint32_t strays, std::string& error) {
    owlkit::MemoryStream decoded;
    error = fuzz::error([&] { Base64Codec(0, alphabet, strays).decodeFromString(text, decoded); });
    require(error.empty() || error == "parse error");
    require(strays != owlkit::kIgnoreStrays || error.empty());
    require(decoded.size() <= static_cast<std::int64_t>(text.size()) * 3 / 4 + 1);
    return content(decoded);
}

void decodeAny(const std::string& text, std::uint32_t alphabet, std::uint32_t strays) {
    std::string error;
    std::string wideError;
    const std::string bytes = decode(text, alphabet, strays, error);
    const std::u16string wide(text.begin(), text.end());
    const std::string wideBytes = decode(fuzz::wide(text), alphabet, strays, wideError);
    if (text.find_first_of("\x80\xFF") == std::string::npos && fuzz::wide(text) == wide)
        require(error == wideError && bytes == wideBytes);
    if (!error.empty() || strays != owlkit::kRefuseStrays)
        return;
    // All letters but the last, whose low bits may be lost, are those of the bytes.
    const std::string letters = text.substr(0, text.find('='));
    const std::string again = encode(bytes, 0, alphabet);
    require(again.size() + 1 >= letters.size());
    require(letters.empty() || again.compare(0, letters.size() - 1, letters, 0, letters.size() - 1) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::int32_t lineLength = input.ConsumeIntegral<std::int8_t>();
    const std::uint32_t alphabet = input.ConsumeIntegralInRange<std::uint32_t>(0, 1);
    const std::uint32_t strays = input.ConsumeIntegralInRange<std::uint32_t>(0, 2);
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    roundTrip(bytes, lineLength, alphabet);
    decodeAny(bytes, alphabet, strays);
    return 0;
}
