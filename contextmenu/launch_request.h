// The request that travels from the menu to the application on its command line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nmshell {

struct CursorPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool operator==(const CursorPoint&) const = default;
};

struct LaunchRequest {
    std::uint32_t command = 0;  // 0: no command
    std::u16string data;        // for the menu's commands the text of a PathList; empty: absent
    std::u16string path;        // empty: absent
    CursorPoint cursor;         // screen coordinates; counts only when cursorValid is set
    bool cursorValid = false;
    bool operator==(const LaunchRequest&) const = default;
};

// The argument keywords, written and compared exactly.
inline constexpr std::u16string_view kCommandKeyword = u"-cmd";  // command number, lower-case hexadecimal
inline constexpr std::u16string_view kCursorKeyword =
    u"-cent";  // base64 of x and y, 32 bits each, little-endian
inline constexpr std::u16string_view kDataKeyword = u"-data";  // base64 of the data's UTF-16LE bytes
inline constexpr std::u16string_view kDataFileKeyword =
    u"-tfn";                                                // name of a hand-over file that holds the data
inline constexpr std::u16string_view kPathKeyword = u"-p";  // a path

// Data of up to this many code units goes inline, longer data through a hand-over file.
inline constexpr std::size_t kMaxInlineData = 512;

// The cursor as the value of "-cent".
std::u16string encodeCursor(const CursorPoint& point);

// The value of "-cent" back into a point. False, and (0, 0), for fewer than 2 characters or characters that
// are not base64. Of a text too short for both coordinates the bytes that there are count.
bool decodeCursor(std::u16string_view text, CursorPoint& point);

// The value of "-data" back into text; empty for fewer than 2 characters or characters that are not base64.
// An odd last byte is dropped.
std::u16string decodeData(std::u16string_view text);

// The value of "-data" for `data`.
std::u16string encodeInlineData(std::u16string_view data);

// A path or file name as one command-line item: every space becomes "%20", nothing else is escaped.
std::u16string escapeSpaces(std::u16string_view text);

// The reverse. A text that held "%20" before it was escaped comes back with a space there.
std::u16string unescapeSpaces(std::u16string_view text);

// The request that `arguments` carry (one item each, without the program's name), and its command number as
// the result. Unknown items are ignored, values that cannot be read count as absent. A hand-over file is read
// and deleted.
std::uint32_t parseArguments(const std::vector<std::u16string>& arguments, LaunchRequest& request);

}  // namespace nmshell
