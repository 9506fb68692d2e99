// What findDropPaths() finds, found in the plainest way.
#pragma once

#include <cstring>
#include <string_view>

#include "platform/drop_block.h"

namespace test {

// The paths unit by unit.
inline platform::DropPaths findSlowly(std::string_view block) {
    platform::DropPaths paths;
    std::uint32_t offset = 0, isWide = 0;
    constexpr std::size_t kHeader = 20;
    if (block.size() < kHeader)
        return paths;
    std::memcpy(&offset, block.data(), sizeof offset);
    std::memcpy(&isWide, block.data() + 16, sizeof isWide);
    if (offset > block.size())
        return paths;
    paths.isWide = isWide != 0;
    const std::size_t width = paths.isWide ? 2 : 1;
    std::string_view rest = block.substr(offset);
    rest = rest.substr(0, rest.size() / width * width);
    std::size_t start = 0, ended = 0;
    for (std::size_t at = 0; at != rest.size(); at += width) {
        if (rest.substr(at, width).find_first_not_of('\0') != rest.npos) {
            paths.count += at == start;
        } else if (at == start) {
            break;
        } else {
            start = ended = at + width;
        }
    }
    paths.bytes = rest.substr(0, ended);
    return paths;
}

}  // namespace test
