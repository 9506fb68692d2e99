#include "platform/drop_block.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace platform {
namespace {

using namespace std::string_literals;

std::string number(std::uint32_t value) {
    std::string bytes(sizeof(value), '\0');
    std::memcpy(bytes.data(), &value, sizeof(value));
    return bytes;
}

std::string header(std::uint32_t offset, std::uint32_t isWide) {
    return number(offset) + std::string(12, '\xFF') + number(isWide);
}

std::string units(std::u16string_view text) {
    std::string bytes(text.size() * 2, '\0');
    std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
}

TEST(DropBlock, FindsThePathsThatEndAndCountsTheRest) {
    const std::string wide = header(20, 1), narrow = header(20, 0);
    const std::string two = units(u"C:\\a\0\u0100\x6100\0"s);  // units with a zero byte in either half
    const struct Case {
        const char* name;
        std::string block;
        std::uint32_t count;
        std::string bytes;
        std::size_t paths;
    } cases[] = {
        {"no block", "", 0, "", 0},
        {"a cut header", wide.substr(0, 19), 0, "", 0},
        {"no list", wide, 0, "", 0},
        {"an empty list", wide + "\0\0"s, 0, "", 0},
        {"wide", wide + two + "\0\0x\0\0\0"s, 2, two, 2},
        {"any number but 0 is wide", header(20, 0x100) + two + "\0\0"s, 2, two, 2},
        {"at an odd address", header(21, 1) + "?" + two + "\0\0"s, 2, two, 2},
        {"without the closing zero", wide + two, 2, two, 2},
        {"a last path without its zero", wide + two + units(u"C:\\b"), 3, two, 2},
        {"a cut last unit", wide + two + "x", 2, two, 2},
        {"a cut zero", wide + two + "x\0\0"s, 3, two, 2},
        {"ANSI", narrow + "C:\\a\0\xE9\0\0x\0"s, 2, "C:\\a\0\xE9\0"s, 2},
        {"ANSI without its zero", narrow + "a\0b"s, 2, "a\0"s, 1},
        {"the paths at the end", header(20 + 2, 0) + "ab", 0, "", 0},
        {"the paths behind it", header(20 + 3, 0) + "ab", 0, "", 0},
        {"the paths far behind it", header(0xFFFFFFFF, 1) + two, 0, "", 0},
        {"the paths in the header", header(16, 1) + "\0\0"s, 1, "\1\0\0\0"s, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        // Exactly so large that a sanitizer sees a read behind the end.
        const auto block = std::make_unique<char[]>(c.block.size());
        std::memcpy(block.get(), c.block.data(), c.block.size());
        const DropPaths paths = findDropPaths(block.get(), c.block.size());
        EXPECT_EQ(paths.count, c.count);
        EXPECT_EQ(paths.bytes, c.bytes);
        std::string joined;
        const std::vector<std::string_view> split = splitDropPaths(paths);
        for (const std::string_view path : split)
            joined.append(path).append(paths.isWide ? 2 : 1, '\0');
        EXPECT_EQ(split.size(), c.paths);
        EXPECT_EQ(joined, c.bytes);
    }
}

}  // namespace
}  // namespace platform
