// The request that travels from the menu to the application on its command line, in both directions.
#pragma once

#include <cstddef>
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

// Data of up to this many code units goes inline, longer data through a hand-over file.
inline constexpr std::size_t kMaxInlineData = 512;

// The hand-over files: handover_file.h has those on the disk, testing/ some in memory.
class Handover {
  public:
    virtual ~Handover() = default;

    // The next file's full name.
    virtual std::u16string makeHandoverFileName() = 0;

    // Lays `data` down under the name; false when not all of it is there.
    [[nodiscard]] virtual bool put(const std::u16string& name, std::u16string_view data) = 0;

    // What lies under the name, which is gone afterwards; empty when nothing could be had.
    virtual std::u16string take(const std::u16string& name) = 0;
};

// The parameters for `command` and `request`, without the executable. Data of more than kMaxInlineData code
// units is put into a hand-over file; when that fails the parameters carry no data.
std::u16string buildArguments(std::uint32_t command, const LaunchRequest& request, Handover& handover);

// The request that `arguments` carry (one item each, without the program's name), and its command number as
// the result. Unknown items are ignored, values that cannot be read count as absent. A hand-over file is
// taken.
std::uint32_t parseArguments(const std::vector<std::u16string>& arguments, LaunchRequest& request,
                             Handover& handover);

// The cursor as the value of "-cent": base64 of x and y, 32 bits each, least significant byte first.
std::u16string encodeCursor(const CursorPoint& point);

// The value of "-cent" back into a point. False, and (0, 0), for fewer than 2 characters or characters that
// are not base64. Of a text too short for both coordinates the bytes that there are count.
[[nodiscard]] bool decodeCursor(std::u16string_view text, CursorPoint& point);

// The value of "-data": base64 of the UTF-16LE bytes.
std::u16string encodeData(std::u16string_view data);

// The value of "-data" back into text; empty for fewer than 2 characters or characters that are not base64.
// An odd last byte is dropped.
std::u16string decodeData(std::u16string_view text);

}  // namespace nmshell
