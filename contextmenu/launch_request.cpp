#include "contextmenu/launch_request.h"

#include <stdexcept>

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

constexpr std::int32_t kNoLineBreaks = 0;

std::u16string toBase64(owlkit::MemoryStream& bytes) {
    std::u16string text;
    bytes.seek(0, 0);
    owlkit::Base64Codec().encodeToString(bytes, text);
    return text;
}

// Fills `bytes`, positioned at its start; false, and nothing in it, when `text` is not base64.
bool fromBase64(std::u16string_view text, owlkit::MemoryStream& bytes) {
    if (text.size() < kShortestBase64)
        return false;
    try {
        // A character that got lost or added on the way must not silently turn a path into another one.
        owlkit::Base64Codec(kNoLineBreaks, owlkit::kBase64Standard, owlkit::kRefuseStrays)
            .decodeFromString(text, bytes);
    } catch (const std::runtime_error&) {
        return false;
    }
    return bytes.seek(0, 0);
}

// Texts in `bytes` are the bare code units, least significant byte first.
void useUtf16(owlkit::MemoryStream& bytes) {
    bytes.setByteOrder(owlkit::kLittleEndian);
    bytes.setTextEncoding(owlkit::kEncodingUtf16);
}

std::uint32_t parseCommand(std::u16string_view text) {
    std::int32_t value = 0;
    const std::uint32_t consumed = owlkit::parseInt32(text, value, kHexadecimal);
    return consumed != 0 && consumed != owlkit::kParseOverflow ? static_cast<std::uint32_t>(value) : 0;
}

}  // namespace

std::u16string encodeCursor(const CursorPoint& point) {
    owlkit::MemoryStream bytes;
    bytes.setByteOrder(owlkit::kLittleEndian);
    bytes.writeInt32(point.x);
    bytes.writeInt32(point.y);
    return toBase64(bytes);
}

bool decodeCursor(std::u16string_view text, CursorPoint& point) {
    point = {};
    owlkit::MemoryStream bytes;
    if (!fromBase64(text, bytes))
        return false;
    bytes.setByteOrder(owlkit::kLittleEndian);
    bytes.readInt32(point.x);
    bytes.readInt32(point.y);
    return true;
}

std::u16string encodeInlineData(std::u16string_view data) {
    owlkit::MemoryStream bytes;
    useUtf16(bytes);
    bytes.writeText(data);
    return toBase64(bytes);
}

std::u16string decodeData(std::u16string_view text) {
    std::u16string data;
    owlkit::MemoryStream bytes;
    if (!fromBase64(text, bytes))
        return data;
    useUtf16(bytes);
    bytes.readText(data);
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

std::vector<std::u16string> splitPathList(std::u16string_view paths) {
    std::vector<std::u16string> result;
    for (std::size_t end; (end = paths.find(u'\0')) != std::u16string_view::npos;
         paths.remove_prefix(end + 1))
        result.emplace_back(paths.substr(0, end));
    return result;
}

}  // namespace nmshell
