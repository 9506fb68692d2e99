#include "foundation/charset/conversion_runs.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "foundation/text/utf16.h"

namespace owlkit {
namespace {

// ASCII is converted by blocks of 16 units with SSE2, which every x86-64 processor has. Elsewhere it goes
// by characters until eight units of ASCII promise another block.
constexpr std::ptrdiff_t kBlock = 16;
constexpr std::ptrdiff_t kSlack = kRunSlack;

// How many of the 16 units come before the first whose bit is clear.
std::ptrdiff_t leading(unsigned bits) {
    return std::countr_one(bits);
}

__m128i load(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
void store(void* to, __m128i value) {
    _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

// Widens 16 bytes and tells how many of them, from the first on, are ASCII; with `withoutZero` 0 is none.
std::ptrdiff_t widenBlock(const std::uint8_t* in, char16_t* out, bool withoutZero) {
    const __m128i bytes = load(in);
    const __m128i zero = _mm_setzero_si128();
    store(out, _mm_unpacklo_epi8(bytes, zero));
    store(out + 8, _mm_unpackhi_epi8(bytes, zero));
    const int refused =
        _mm_movemask_epi8(withoutZero ? _mm_or_si128(bytes, _mm_cmpeq_epi8(bytes, zero)) : bytes);
    return leading(~static_cast<unsigned>(refused) & 0xFFFF);
}

// The same in the other direction.
std::ptrdiff_t narrowBlock(const char16_t* in, std::uint8_t* out, bool withoutZero) {
    const __m128i low = load(in);
    const __m128i high = load(in + 8);
    store(out, _mm_packus_epi16(low, high));
    const __m128i zero = _mm_setzero_si128();
    const __m128i aboveAscii = _mm_set1_epi16(static_cast<short>(0xFF80));
    const auto isAscii = [&](__m128i units) {
        return _mm_cmpeq_epi16(_mm_and_si128(units, aboveAscii), zero);
    };
    int ascii = _mm_movemask_epi8(_mm_packs_epi16(isAscii(low), isAscii(high)));
    if (withoutZero)
        ascii &= ~_mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(low, zero), _mm_cmpeq_epi16(high, zero)));
    return leading(static_cast<unsigned>(ascii));
}

template <class Word>
Word read(const void* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}
bool beginsBlock(const std::uint8_t* in) {
    return (read<std::uint64_t>(in) & 0x8080808080808080) == 0;
}
bool beginsBlock(const char16_t* in) {
    return ((read<std::uint64_t>(in) | read<std::uint64_t>(in + 4)) & 0xFF80FF80FF80FF80) == 0;
}

// Decodes the sequence of two to four bytes that `in` begins with, of which four can be read; false, and
// nothing moves, when there is none. Sequences of one length follow each other, so that each length has its
// own way out.
[[gnu::always_inline]] inline bool decodeSequence(const std::uint8_t*& in, char16_t*& out) {
    const auto word = read<std::uint32_t>(in);
    if ((word & 0xC0E0) == 0x80C0) {
        if ((word & 0x1E) == 0)
            return false;
        *out++ = static_cast<char16_t>((word & 0x1F) << 6 | (word >> 8 & 0x3F));
        in += 2;
        return true;
    }
    if ((word & 0xC0C0F0) == 0x8080E0) {
        const std::uint32_t c = (word & 0x0F) << 12 | (word >> 2 & 0xFC0) | (word >> 16 & 0x3F);
        if (c < 0x800)
            return false;
        *out++ = static_cast<char16_t>(c);
        in += 3;
        return true;
    }
    if ((word & 0xC0C0C0F8) != 0x808080F0)
        return false;
    const char32_t c =
        (word & 0x07) << 18 | (word << 4 & 0x3F000) | (word >> 10 & 0xFC0) | (word >> 24 & 0x3F);
    if (c < kFirstSupplementary || c > kLastCharacter)
        return false;
    *out++ = highSurrogateOf(c);
    *out++ = lowSurrogateOf(c);
    in += 4;
    return true;
}

// How many of 16 bytes, which begin with a whole character, passUtf8Run can pass at once: all up to the last
// character that they cut, or the ASCII before the first one that has to be looked at by itself.
std::ptrdiff_t passBlock(const std::uint8_t* in) {
    const __m128i bytes = load(in);
    const auto bits = [](__m128i mask) { return static_cast<unsigned>(_mm_movemask_epi8(mask)); };
    const auto are = [&](int byte) {
        return bits(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(byte))));
    };
    const auto below = [&](int byte) {
        return bits(_mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(byte))));
    };
    const unsigned beyondAscii = bits(bytes);
    if (beyondAscii == 0)
        return kBlock;
    // The bytes beyond ASCII compare as negative numbers, in their order.
    const unsigned continuing = below(0xC0);
    const unsigned leading2 = beyondAscii & ~continuing;  // or more
    const unsigned leading3 = beyondAscii & ~below(0xE0);
    const unsigned leading4 = beyondAscii & ~below(0xF0);
    const unsigned wanted = leading2 << 1 | leading3 << 2;
    // Overlong forms, and surrogates.
    const unsigned refused =
        are(0xC0) | are(0xC1) | (are(0xE0) << 1 & below(0xA0)) | (are(0xED) << 1 & ~below(0xA0));
    if (leading4 != 0 || (refused & 0xFFFF) != 0 || (wanted & 0xFFFF) != continuing)
        return std::countr_zero(beyondAscii);
    return wanted >> 16 == 0 ? kBlock : std::bit_width(leading2) - 1;
}

// Writes the first `count` of four bytes, the lowest one first.
void put(std::uint8_t*& out, std::uint32_t bytes, std::size_t count) {
    std::memcpy(out, &bytes, 4);
    out += count;
}
void putThree(std::uint8_t*& out, char32_t c) {
    put(out, 0x8080E0 | c >> 12 | (c << 2 & 0x3F00) | (c & 0x3F) << 16, 3);
}

// Encodes eight units and tells how many of them, from the first on, take two bytes.
std::ptrdiff_t encodePairs(const char16_t* in, std::uint8_t* out) {
    const __m128i units = load(in);
    const __m128i low = _mm_slli_epi16(_mm_and_si128(units, _mm_set1_epi16(0x3F)), 8);
    store(out, _mm_or_si128(_mm_or_si128(_mm_srli_epi16(units, 6), low),
                            _mm_set1_epi16(static_cast<short>(0x80C0))));
    const __m128i below800 = _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800))),
                                             _mm_setzero_si128());
    const __m128i pairs = _mm_and_si128(below800, _mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F)));
    return leading(static_cast<unsigned>(_mm_movemask_epi8(pairs))) / 2;
}

// Encodes the character from 0x80 on that [in, end) begins with; false, and nothing moves, when it fails.
[[gnu::always_inline]] inline bool encodeCharacter(const char16_t*& in, const char16_t* end,
                                                   std::uint8_t*& out, bool keepBytes) {
    const char32_t c = *in;
    if (c < 0x800) {
        put(out, 0x80C0 | c >> 6 | (c & 0x3F) << 8, 2);
    } else if (!isSurrogate(c)) {
        putThree(out, c);
    } else if (isHighSurrogate(c) && end - in > 1 && isLowSurrogate(in[1])) {
        const char32_t whole = fromSurrogates(c, *++in);
        put(out,
            0x808080F0 | whole >> 18 | (whole >> 4 & 0x3F00) | (whole << 10 & 0x3F0000) |
                (whole & 0x3F) << 24,
            4);
    } else if (keepBytes && c >= 0xDC80 && c <= 0xDCFF) {
        return false;
    } else {
        putThree(out, c);
    }
    ++in;
    return true;
}

// The way of a run: blocks of ASCII by `block`, which tells how many of 16 units it converted, between them
// characters by `character`, which may take several, and near the end one by one by `last`; both answer false
// for one that fails.
template <class In, class Out, class Block, class Character, class Last>
void convertRun(const In*& start, const In* end, Out*& target, const Out* limit, Block block,
                Character character, Last last) {
    const In* in = start;
    Out* out = target;
    const In* const blocksEnd = end - in >= kBlock ? end - kBlock + 1 : in;  // a block can be read before it
    const Out* const roomEnd = limit - kSlack;
    bool goesOn = true;
    while (in < blocksEnd && out <= roomEnd && goesOn) {
        const std::ptrdiff_t ascii = block(in, out);
        in += ascii;
        out += ascii;
        if (ascii == kBlock)
            continue;
        while (in < blocksEnd && out <= roomEnd) {
            if (*in < 0x80) {
                if (beginsBlock(in))
                    break;
                *out++ = static_cast<Out>(*in++);
            } else if (!character(in, out)) {
                goesOn = false;
                break;
            }
        }
    }
    while (in != end && out <= roomEnd && goesOn) {
        if (*in < 0x80)
            *out++ = static_cast<Out>(*in++);
        else
            goesOn = last(in, out);
    }
    start = in;
    target = out;
}

// The same where every character is one unit; a block that is not ASCII goes through `unit`, which gives 0
// for a failure.
template <class In, class Out, class Block, class Unit>
void convertUnits(const In*& start, const In* end, Out*& target, const Out* limit, Block block, Unit unit) {
    const In* in = start;
    Out* out = target;
    bool defined = true;
    while (end - in >= kBlock && limit - out >= kSlack && defined) {
        if (block(in, out) != kBlock) {
            for (std::ptrdiff_t i = 0; i < kBlock; ++i) {
                out[i] = unit(in[i]);
                defined = defined & (out[i] != 0);
            }
        }
        in += defined ? kBlock : 0;
        out += defined ? kBlock : 0;
    }
    for (; in != end && limit - out >= kSlack && (*out = unit(*in)) != 0; ++in)
        ++out;
    start = in;
    target = out;
}

}  // namespace

void decodeUtf8Run(const std::uint8_t*& in, const std::uint8_t* end, char16_t*& out, const char16_t* limit) {
    convertRun(
        in, end, out, limit,
        [](const std::uint8_t* from, char16_t* to) { return widenBlock(from, to, false); }, decodeSequence,
        [end](const std::uint8_t*& from, char16_t*& to) {
            std::uint8_t rest[4] = {};  // 0 continues no sequence
            std::memcpy(rest, from, static_cast<std::size_t>(std::min<std::ptrdiff_t>(end - from, 4)));
            const std::uint8_t* behind = rest;
            const bool decoded = decodeSequence(behind, to);
            from += behind - rest;
            return decoded;
        });
}

void passUtf8Run(const std::uint8_t*& in, const std::uint8_t* end) {
    while (in != end) {
        const std::ptrdiff_t passed = end - in >= kBlock ? passBlock(in) : *in < 0x80 ? 1 : 0;
        if (passed != 0) {
            in += passed;
            continue;
        }
        std::uint8_t rest[4] = {};  // 0 continues no sequence
        const std::uint8_t* behind = in;
        if (end - in < 4)
            behind = static_cast<std::uint8_t*>(std::memcpy(rest, in, static_cast<std::size_t>(end - in)));
        const std::uint8_t* const start = behind;
        char16_t units[2];
        char16_t* to = units;
        if (!decodeSequence(behind, to) || (to - units == 1 && isSurrogate(units[0])))
            return;
        in += behind - start;
    }
}

void encodeUtf8Run(const char16_t*& in, const char16_t* end, std::uint8_t*& out, const std::uint8_t* limit,
                   bool keepBytes) {
    const auto one = [=](const char16_t*& from, std::uint8_t*& to) {
        return encodeCharacter(from, end, to, keepBytes);
    };
    const auto some = [=](const char16_t*& from, std::uint8_t*& to) {
        if (*from >= 0x800)
            return one(from, to);
        const std::ptrdiff_t pairs = encodePairs(from, to);
        from += pairs;
        to += 2 * pairs;
        return true;
    };
    convertRun(
        in, end, out, limit,
        [](const char16_t* from, std::uint8_t* to) { return narrowBlock(from, to, false); }, some, one);
}

void decodeTableRun(const SingleByteTable& table, const std::uint8_t*& in, const std::uint8_t* end,
                    char16_t*& out, const char16_t* limit) {
    convertUnits(
        in, end, out, limit,
        [](const std::uint8_t* from, char16_t* to) { return widenBlock(from, to, true); },
        [&table](std::uint8_t byte) { return table.decode(byte); });
}

void encodeTableRun(const SingleByteTable& table, const char16_t*& in, const char16_t* end,
                    std::uint8_t*& out, const std::uint8_t* limit) {
    convertUnits(
        in, end, out, limit,
        [](const char16_t* from, std::uint8_t* to) { return narrowBlock(from, to, true); },
        [&table](char16_t unit) { return table.encode(unit); });
}

}  // namespace owlkit
