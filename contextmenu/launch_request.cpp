#include "contextmenu/launch_request.h"

#include <optional>

#include "contextmenu/handover_file.h"
#include "foundation/codec/base64.h"
#include "foundation/stream/memory_stream.h"
#include "foundation/text/number.h"
#include "foundation/text/text.h"

namespace nmshell {
namespace {

constexpr std::u16string_view kEscapedSpace = u"%20";
constexpr std::uint32_t kHexadecimal = 16;
constexpr std::size_t kShortestBase64 = 2;

// Scalars least significant byte first, texts as their bare code units.
void useLittleEndian(owlkit::MemoryStream& stream) {
    stream.setByteOrder(owlkit::kLittleEndian);
    stream.setTextEncoding(owlkit::kEncodingUtf16);
}

std::u16string toBase64(const owlkit::MemoryStream& stream) {
    return owlkit::base64(
        {reinterpret_cast<const char*>(stream.data()), static_cast<std::size_t>(stream.size())});
}

// The bytes of a value; nothing when it is too short or not base64: a character that got lost or added on the
// way must not silently turn a path into another one.
std::optional<std::string> fromValue(std::u16string_view text) {
    return text.size() < kShortestBase64 ? std::nullopt : owlkit::fromBase64(text);
}

std::uint32_t parseCommand(std::u16string_view text) {
    std::int32_t value = 0;
    const std::uint32_t consumed = owlkit::parseInt32(text, value, kHexadecimal);
    return consumed != 0 && consumed != owlkit::kParseOverflow ? static_cast<std::uint32_t>(value) : 0;
}

}  // namespace

std::u16string encodeCursor(const CursorPoint& point) {
    owlkit::MemoryStream stream;
    useLittleEndian(stream);
    stream.writeInt32(point.x);
    stream.writeInt32(point.y);
    return toBase64(stream);
}

bool decodeCursor(std::u16string_view text, CursorPoint& point) {
    point = {};
    const std::optional<std::string> bytes = fromValue(text);
    if (!bytes)
        return false;
    owlkit::MemoryStream stream(bytes->data(), bytes->size(), false);
    useLittleEndian(stream);
    stream.readInt32(point.x);
    stream.readInt32(point.y);
    return true;
}

std::u16string encodeInlineData(std::u16string_view data) {
    owlkit::MemoryStream stream;
    useLittleEndian(stream);
    stream.writeText(data);
    return toBase64(stream);
}

std::u16string decodeData(std::u16string_view text) {
    std::u16string data;
    if (const std::optional<std::string> bytes = fromValue(text)) {
        owlkit::MemoryStream stream(bytes->data(), bytes->size(), false);
        useLittleEndian(stream);
        stream.readText(data);
    }
    return data;
}

std::u16string escapeSpaces(std::u16string_view text) {
    return owlkit::replaceAll(std::u16string(text), u" ", kEscapedSpace);
}

std::u16string unescapeSpaces(std::u16string_view text) {
    return owlkit::replaceAll(std::u16string(text), kEscapedSpace, u" ");
}

std::uint32_t parseArguments(const std::vector<std::u16string>& arguments, LaunchRequest& request) {
    request = {};
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        const std::u16string& item = arguments[i];
        const std::u16string& value = arguments[i + 1];
        if (item == kCommandKeyword && request.command == 0) {
            request.command = parseCommand(value);
            ++i;
        } else if (item == kCursorKeyword) {
            // Deliberate: the scan goes on at the value, here and for "-p"; it is simply no keyword.
            request.cursorValid = decodeCursor(value, request.cursor);
        } else if (item == kDataKeyword) {
            request.data = decodeData(value);
            ++i;
        } else if (item == kDataFileKeyword) {
            request.data = readHandoverFile(unescapeSpaces(value));
            ++i;
        } else if (item == kPathKeyword) {
            request.path = unescapeSpaces(value);
        }
    }
    return request.command;
}

}  // namespace nmshell
