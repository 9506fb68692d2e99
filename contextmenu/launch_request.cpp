#include "contextmenu/launch_request.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "foundation/codec/base64.h"
#include "foundation/text/number.h"
#include "foundation/text/text.h"

namespace nmshell {
namespace {

constexpr std::u16string_view kEscapedSpace = u"%20";
constexpr std::uint32_t kHexadecimal = 16;
constexpr std::size_t kShortestBase64 = 2;

// The `width` low bytes of `value`, the least significant one first.
void append(std::string& bytes, std::uint32_t value, std::size_t width) {
    for (; width > 0; --width, value >>= 8)
        bytes += static_cast<char>(value);
}

// The value of up to `width` such bytes at `at`: those behind the end are 0.
std::uint32_t valueAt(std::string_view bytes, std::size_t at, std::size_t width) {
    std::uint32_t value = 0;
    for (std::size_t i = std::min(bytes.size(), at + width); i > at; --i)
        value = value << 8 | static_cast<std::uint8_t>(bytes[i - 1]);
    return value;
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

// A path or file name as one command-line item. A text that holds the escape already does not come back.
std::u16string escapeSpaces(std::u16string_view text) {
    return owlkit::replaceAll(text, u" ", kEscapedSpace);
}

std::u16string unescapeSpaces(std::u16string_view text) {
    return owlkit::replaceAll(text, kEscapedSpace, u" ");
}

// What goes out: a request, its command, and the hand-over file that its data is in.
struct Outgoing {
    std::uint32_t command;
    const LaunchRequest& request;
    std::u16string_view file;  // empty: none could be written
};

struct Argument {
    std::u16string_view keyword;  // written and compared exactly
    bool (*isDue)(const LaunchRequest& request, std::uint32_t command);
    std::u16string (*value)(const Outgoing& outgoing);  // as one item; empty: there is none after all
    // Takes the value over. True when the scan goes on behind it; at it, where it is simply no keyword,
    // otherwise.
    bool (*read)(std::u16string_view value, LaunchRequest& request, Handover& handover);
};

// In the order in which they are written.
constexpr Argument kArguments[] = {
    {u"-cmd", [](const LaunchRequest&, std::uint32_t command) { return command != 0; },
     [](const Outgoing& outgoing) {
         return owlkit::formatNumber<char16_t>(outgoing.command, owlkit::NumberFormat::LowerHex);
     },
     [](std::u16string_view value, LaunchRequest& request, Handover&) {
         const bool isFirst = request.command == 0;  // a second one is no keyword
         if (isFirst)
             request.command = parseCommand(value);
         return isFirst;
     }},
    {u"-cent", [](const LaunchRequest& request, std::uint32_t) { return request.cursorValid; },
     [](const Outgoing& outgoing) { return encodeCursor(outgoing.request.cursor); },
     [](std::u16string_view value, LaunchRequest& request, Handover&) {
         request.cursorValid = decodeCursor(value, request.cursor);
         return false;  // compatible, here and for "-p": the value is looked at as a keyword too
     }},
    {u"-data",
     [](const LaunchRequest& request, std::uint32_t) {
         return !request.data.empty() && request.data.size() <= kMaxInlineData;
     },
     [](const Outgoing& outgoing) { return encodeData(outgoing.request.data); },
     [](std::u16string_view value, LaunchRequest& request, Handover&) {
         request.data = decodeData(value);
         return true;
     }},
    {u"-tfn",
     [](const LaunchRequest& request, std::uint32_t) { return request.data.size() > kMaxInlineData; },
     [](const Outgoing& outgoing) { return escapeSpaces(outgoing.file); },
     [](std::u16string_view value, LaunchRequest& request, Handover& handover) {
         request.data = handover.take(unescapeSpaces(value));
         return true;
     }},
    {u"-p", [](const LaunchRequest& request, std::uint32_t) { return !request.path.empty(); },
     [](const Outgoing& outgoing) { return escapeSpaces(outgoing.request.path); },
     [](std::u16string_view value, LaunchRequest& request, Handover&) {
         request.path = unescapeSpaces(value);
         return false;
     }},
};

std::u16string compose(const Outgoing& outgoing) {
    std::u16string arguments;
    for (const Argument& argument : kArguments) {
        if (!argument.isDue(outgoing.request, outgoing.command))
            continue;
        // Compatible: the application is used to the space before a value that turns out to be none, too.
        if (!arguments.empty())
            arguments += u' ';
        if (const std::u16string value = argument.value(outgoing); !value.empty())
            ((arguments += argument.keyword) += u' ') += value;
    }
    return arguments;
}

}  // namespace

std::u16string buildArguments(std::uint32_t command, const LaunchRequest& request, Handover& handover) {
    if (request.data.size() <= kMaxInlineData)
        return compose({command, request, {}});
    const std::u16string name = handover.makeHandoverFileName();
    // Both are there before the file is: once it is written nothing may fail, or nobody would be told of it.
    std::u16string with = compose({command, request, name});
    std::u16string without = compose({command, request, {}});
    return std::move(handover.put(name, request.data) ? with : without);
}

std::uint32_t parseArguments(const std::vector<std::u16string>& arguments, LaunchRequest& request,
                             Handover& handover) {
    request = {};
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        const auto argument = std::ranges::find(kArguments, arguments[i], &Argument::keyword);
        if (argument != std::end(kArguments) && argument->read(arguments[i + 1], request, handover))
            ++i;
    }
    return request.command;
}

std::u16string encodeCursor(const CursorPoint& point) {
    std::string bytes;
    append(bytes, static_cast<std::uint32_t>(point.x), sizeof point.x);
    append(bytes, static_cast<std::uint32_t>(point.y), sizeof point.y);
    return owlkit::base64(bytes);
}

bool decodeCursor(std::u16string_view text, CursorPoint& point) {
    point = {};
    const std::optional<std::string> bytes = fromValue(text);
    if (!bytes)
        return false;
    point.x = static_cast<std::int32_t>(valueAt(*bytes, 0, sizeof point.x));
    point.y = static_cast<std::int32_t>(valueAt(*bytes, sizeof point.x, sizeof point.y));
    return true;
}

std::u16string encodeData(std::u16string_view data) {
    std::string bytes;
    bytes.reserve(data.size() * sizeof(char16_t));
    for (const char16_t unit : data)
        append(bytes, unit, sizeof unit);
    return owlkit::base64(bytes);
}

std::u16string decodeData(std::u16string_view text) {
    const std::string bytes = fromValue(text).value_or(std::string());
    std::u16string data(bytes.size() / sizeof(char16_t), u'\0');
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<char16_t>(valueAt(bytes, i * sizeof(char16_t), sizeof(char16_t)));
    return data;
}

}  // namespace nmshell
