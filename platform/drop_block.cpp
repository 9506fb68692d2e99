#include "platform/drop_block.h"

#include <emmintrin.h>

#include <bit>
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

template <class Unit>
bool isZero(const char* bytes) {
    Unit unit;
    std::memcpy(&unit, bytes, sizeof(unit));  // at odd addresses too
    return unit == 0;
}

// The bytes before the first unit of [from, from + size) that is 0, or all of them: by blocks of 16 with
// SSE2, which every x86-64 processor has.
template <class Unit>
std::size_t lengthToZero(const char* from, std::size_t size) {
    const __m128i zero = _mm_setzero_si128();
    std::size_t at = 0;
    for (; size - at >= sizeof zero; at += sizeof zero) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at));
        const __m128i zeros = sizeof(Unit) == 1 ? _mm_cmpeq_epi8(bytes, zero) : _mm_cmpeq_epi16(bytes, zero);
        if (const auto found = static_cast<unsigned>(_mm_movemask_epi8(zeros)); found != 0)
            return at + static_cast<std::size_t>(std::countr_zero(found));
    }
    while (at != size && !isZero<Unit>(from + at))
        at += sizeof(Unit);
    return at;
}

// The paths at the start of `rest`. Units that its end cuts do not count.
template <class Unit>
DropPaths walk(std::string_view rest) {
    DropPaths paths;
    paths.isWide = sizeof(Unit) == sizeof(char16_t);
    const char* const start = rest.data();
    const std::size_t size = rest.size() - rest.size() % sizeof(Unit);
    std::size_t ended = 0;
    for (std::size_t at = 0; at != size && !isZero<Unit>(start + at); ended = at) {
        ++paths.count;
        at += lengthToZero<Unit>(start + at, size - at);
        if (at == size)
            break;
        at += sizeof(Unit);
    }
    paths.bytes = rest.substr(0, ended);
    return paths;
}

std::u16string wideText(std::string_view bytes) {
    const std::size_t length = bytes.size() / sizeof(char16_t);
    if (reinterpret_cast<std::uintptr_t>(bytes.data()) % alignof(char16_t) == 0)
        return {reinterpret_cast<const char16_t*>(bytes.data()), length};
    std::u16string text(length, u'\0');
    std::memcpy(text.data(), bytes.data(), bytes.size());
    return text;
}

// One path after the other: converted as one text, half a double-byte character at the end of a path could
// take the path's zero along.
std::u16string convertedText(std::string_view bytes, FromAnsi fromAnsi) {
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = bytes.find('\0');
        if (const std::u16string path = fromAnsi(bytes.substr(0, length)); !path.empty())
            (text += path) += u'\0';
        bytes.remove_prefix(length + 1);
    }
    return text;
}

}  // namespace

DropPaths findDropPaths(const void* block, std::size_t size) {
    Header header;
    if (block == nullptr || size < sizeof(header))
        return {};
    std::memcpy(&header, block, sizeof(header));
    if (header.pathsOffset > size)
        return {};
    const std::string_view rest(static_cast<const char*>(block) + header.pathsOffset,
                                size - header.pathsOffset);
    return header.isWide != 0 ? walk<char16_t>(rest) : walk<char>(rest);
}

DropList readDropBlock(const void* block, std::size_t size, FromAnsi fromAnsi) {
    const DropPaths found = findDropPaths(block, size);
    return {found.count, found.isWide ? wideText(found.bytes) : convertedText(found.bytes, fromAnsi)};
}

}  // namespace platform
