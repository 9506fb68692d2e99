// The memory block that carries a selection or a drop (CF_HDROP): a header of 20 bytes that tells where the
// paths begin and whether they are UTF-16 or in the ANSI code page, then every path with a terminating zero,
// then one zero more. Any program can have filled it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// Of a block that holds no list, all is empty. The view points into the block.
struct DropPaths {
    bool isWide = false;
    std::uint32_t count = 0;  // a last path that lacks its zero is counted
    // The paths that end, each with its zero, as they lie in the block: of a wide list the two bytes of each
    // unit, at even or odd addresses.
    std::string_view bytes;
};

// Walks the `size` bytes at `block` once, up to the closing zero or the last whole unit. Nothing outside them
// is read, whatever the header says.
DropPaths findDropPaths(const void* block, std::size_t size);

struct DropList {
    std::uint32_t count = 0;  // the items, those included that are not among the paths
    std::u16string paths;     // each followed by its zero character
};

// One path of an ANSI list, which is not empty; an empty text when it cannot be converted.
using FromAnsi = std::u16string (*)(std::string_view path);

// The list that findDropPaths() finds in the block. The bytes of a wide one are the text already and are
// copied in one piece; of an ANSI one each path is converted, and one that cannot be is left out but counted.
DropList readDropBlock(const void* block, std::size_t size, FromAnsi fromAnsi);

}  // namespace platform
