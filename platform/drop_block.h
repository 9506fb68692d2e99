// The memory block that carries a selection or a drop (CF_HDROP): a header of 20 bytes that tells where the
// paths begin and whether they are UTF-16 or in the ANSI code page, then every path with a terminating zero,
// then one zero more. Any program can have filled it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace platform {

// Of a block that holds no list, all is empty. The views point into the block.
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

// The single paths of `paths.bytes`, without their zeros.
std::vector<std::string_view> splitDropPaths(const DropPaths& paths);

}  // namespace platform
