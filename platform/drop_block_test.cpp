#include "platform/drop_block.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "testing/drop_block.h"
#include "testing/text.h"

namespace platform {
namespace {

using namespace std::string_literals;

using test::bytesOf;

std::string header(std::uint32_t offset, std::uint32_t isWide) {
    std::string bytes(20, '\xFF');
    std::memcpy(bytes.data(), &offset, sizeof offset);
    std::memcpy(bytes.data() + 16, &isWide, sizeof isWide);
    return bytes;
}

// Characters above 0xFE cannot be converted.
std::u16string fromLatin1(std::string_view path) {
    return path.find('\xFF') == path.npos ? test::widened(path) : std::u16string();
}

TEST(DropBlock, FindsThePathsThatEndAndCountsTheRest) {
    const std::string wide = header(20, 1), narrow = header(20, 0);
    const std::u16string twoPaths = u"C:\\a\0\u0100\x6100\0"s;  // units with a zero byte in either half
    const std::string two = bytesOf(twoPaths);
    const struct Case {
        const char* name;
        std::string block;
        std::uint32_t count;
        std::string bytes;
        std::u16string text;
    } cases[] = {
        {"no block", "", 0, "", u""},
        {"a cut header", wide.substr(0, 19), 0, "", u""},
        {"no list", wide, 0, "", u""},
        {"an empty list", wide + "\0\0"s, 0, "", u""},
        {"wide", wide + two + "\0\0x\0\0\0"s, 2, two, twoPaths},
        {"any number but 0 is wide", header(20, 0x100) + two + "\0\0"s, 2, two, twoPaths},
        {"at an odd address", header(21, 1) + "?" + two + "\0\0"s, 2, two, twoPaths},
        {"without the closing zero", wide + two, 2, two, twoPaths},
        {"a last path without its zero", wide + two + bytesOf(u"C:\\b"), 3, two, twoPaths},
        {"a cut last unit", wide + two + "x", 2, two, twoPaths},
        {"a cut zero", wide + two + "x\0\0"s, 3, two, twoPaths},
        {"ANSI", narrow + "C:\\a\0\xE9\0\0x\0"s, 2, "C:\\a\0\xE9\0"s, u"C:\\a\0\u00E9\0"s},
        {"ANSI with an unreadable path", narrow + "a\0\xFF\0b\0\0"s, 3, "a\0\xFF\0b\0"s, u"a\0b\0"s},
        {"ANSI without its zero", narrow + "a\0b"s, 2, "a\0"s, u"a\0"s},
        {"the paths at the end", header(20 + 2, 0) + "ab", 0, "", u""},
        {"the paths behind it", header(20 + 3, 0) + "ab", 0, "", u""},
        {"the paths far behind it", header(0xFFFFFFFF, 1) + two, 0, "", u""},
        {"the paths in the header", header(16, 1) + "\0\0"s, 1, "\1\0\0\0"s, u"\1\0"s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        // Exactly so large that a sanitizer sees a read behind the end.
        const auto block = std::make_unique<char[]>(c.block.size());
        std::memcpy(block.get(), c.block.data(), c.block.size());
        const DropPaths paths = findDropPaths(block.get(), c.block.size());
        EXPECT_EQ(paths.count, c.count);
        EXPECT_EQ(paths.bytes, c.bytes);
        const DropList list = readDropBlock(block.get(), c.block.size(), fromLatin1);
        EXPECT_EQ(list.count, c.count);
        EXPECT_EQ(list.paths, c.text);
    }
}

TEST(DropBlock, FindsAZeroAtEveryPlaceInABlock) {
    for (const std::uint32_t width : {1u, 2u}) {
        for (std::size_t length = 1; length <= 40; ++length) {
            SCOPED_TRACE(testing::Message() << width << ' ' << length);
            const std::string path(length * width, '\1');
            std::string block = header(20, width - 1) + path + std::string(width, '\0') + path + path +
                                std::string(2 * width, '\0') + path;
            for (; block.size() > 20; block.pop_back()) {
                const DropPaths slow = test::findSlowly(block);
                const DropPaths paths = findDropPaths(block.data(), block.size());
                ASSERT_EQ(paths.count, slow.count) << block.size();
                ASSERT_EQ(paths.bytes, slow.bytes) << block.size();
            }
        }
    }
}

}  // namespace
}  // namespace platform
