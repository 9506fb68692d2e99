#include "platform/drop_block.h"

#include <cstring>

namespace platform {
namespace {

// DROPFILES: the offset of the paths, a point of two numbers, whether it lies outside the client area,
// whether the paths are wide; 32 bits each.
struct Header {
    std::uint32_t pathsOffset;
    std::uint32_t unused[3];
    std::uint32_t isWide;
};
static_assert(sizeof(Header) == 20);

// The index of the first zero unit of `bytes` from `start` on, in bytes; npos when there is none. Units that
// the end cuts do not count.
std::size_t findZero(std::string_view bytes, std::size_t start, std::size_t width) {
    for (std::size_t at = start; bytes.size() - at >= width; at += width)
        if (bytes[at] == '\0' && (width == 1 || bytes[at + 1] == '\0'))
            return at;
    return std::string_view::npos;
}

std::size_t unitWidth(bool isWide) {
    return isWide ? 2 : 1;
}

}  // namespace

DropPaths findDropPaths(const void* block, std::size_t size) {
    DropPaths paths;
    Header header;
    if (block == nullptr || size < sizeof(header))
        return paths;
    std::memcpy(&header, block, sizeof(header));
    if (header.pathsOffset > size)
        return paths;
    paths.isWide = header.isWide != 0;
    const std::size_t width = unitWidth(paths.isWide);
    const std::string_view rest(static_cast<const char*>(block) + header.pathsOffset,
                                size - header.pathsOffset);
    std::size_t start = 0;
    while (rest.size() - start >= width) {
        const std::size_t end = findZero(rest, start, width);
        if (end == start)
            break;
        ++paths.count;
        if (end == std::string_view::npos)
            break;
        start = end + width;
    }
    paths.bytes = rest.substr(0, start);
    return paths;
}

std::vector<std::string_view> splitDropPaths(const DropPaths& paths) {
    std::vector<std::string_view> result;
    const std::size_t width = unitWidth(paths.isWide);
    for (std::size_t start = 0; start < paths.bytes.size();) {
        const std::size_t end = findZero(paths.bytes, start, width);
        result.push_back(paths.bytes.substr(start, end - start));
        start = end + width;
    }
    return result;
}

}  // namespace platform
