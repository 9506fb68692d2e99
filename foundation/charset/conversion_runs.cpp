#include "foundation/charset/conversion_runs.h"

#include <emmintrin.h>

#include <bit>
#include <cstring>

#include "foundation/text/utf16.h"

namespace owlkit {
namespace {

// ASCII is converted by blocks of 16 units with SSE2, which every x86-64 processor has.
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

// The four bytes at `in`, the first one lowest; those behind `end` are 0, which continues no sequence.
std::uint32_t fourBytes(const std::uint8_t* in, const std::uint8_t* end) {
    std::uint32_t word = 0;
    std::memcpy(&word, in, end - in >= 4 ? 4 : static_cast<std::size_t>(end - in));
    return word;
}

// Decodes the sequence of two to four bytes at the start of `word`; gives its length, 0 when there is none.
std::ptrdiff_t decodeSequence(std::uint32_t word, char16_t*& out) {
    if ((word & 0xC0F0) == 0x80E0 && (word & 0xC00000) == 0x800000) {
        const std::uint32_t c = (word & 0x0F) << 12 | (word >> 2 & 0xFC0) | (word >> 16 & 0x3F);
        *out = static_cast<char16_t>(c);
        out += c >= 0x800;
        return c >= 0x800 ? 3 : 0;
    }
    if ((word & 0xC0E0) == 0x80C0 && (word & 0x1E) != 0) {
        *out++ = static_cast<char16_t>((word & 0x1F) << 6 | (word >> 8 & 0x3F));
        return 2;
    }
    if ((word & 0xC0C0C0F8) != 0x808080F0)
        return 0;
    const char32_t c =
        (word & 0x07) << 18 | (word << 4 & 0x3F000) | (word >> 10 & 0xFC0) | (word >> 24 & 0x3F);
    if (c < kFirstSupplementary || c > kLastCharacter)
        return 0;
    *out++ = highSurrogateOf(c);
    *out++ = lowSurrogateOf(c);
    return 4;
}

void put(std::uint8_t*& out, std::uint32_t bytes, std::size_t count) {
    std::memcpy(out, &bytes, 4);
    out += count;
}

// Encodes the character from 0x80 on that [in, end) begins with; gives its code units, 0 when it fails.
std::ptrdiff_t encodeCharacter(const char16_t* in, const char16_t* end, std::uint8_t*& out, bool keepBytes) {
    const char32_t c = *in;
    if (c < 0x800) {
        put(out, 0x80C0 | c >> 6 | (c & 0x3F) << 8, 2);
        return 1;
    }
    if (isHighSurrogate(c) && end - in > 1 && isLowSurrogate(in[1])) {
        const char32_t whole = fromSurrogates(c, in[1]);
        put(out,
            0x808080F0 | whole >> 18 | (whole >> 4 & 0x3F00) | (whole << 10 & 0x3F0000) |
                (whole & 0x3F) << 24,
            4);
        return 2;
    }
    if (keepBytes && c >= 0xDC80 && c <= 0xDCFF)
        return 0;
    put(out, 0x8080E0 | c >> 12 | (c << 2 & 0x3F00) | (c & 0x3F) << 16, 3);
    return 1;
}

// Moves both ends by as many units as were converted one to one.
template <class In, class Out>
void advance(In*& in, Out*& out, std::ptrdiff_t count) {
    in += count;
    out += count;
}

}  // namespace

void decodeUtf8Run(const std::uint8_t*& in, const std::uint8_t* end, char16_t*& out, const char16_t* limit) {
    while (in != end && limit - out >= kSlack) {
        if (end - in >= kBlock) {
            const std::ptrdiff_t ascii = widenBlock(in, out, false);
            advance(in, out, ascii);
            if (ascii == kBlock)
                continue;
        }
        do {
            if (*in < 0x80) {
                *out++ = *in++;
                break;
            }
            const std::ptrdiff_t length = decodeSequence(fourBytes(in, end), out);
            if (length == 0)
                return;
            in += length;
        } while (in != end && limit - out >= kSlack);
    }
}

void encodeUtf8Run(const char16_t*& in, const char16_t* end, std::uint8_t*& out, const std::uint8_t* limit,
                   bool keepBytes) {
    while (in != end && limit - out >= kSlack) {
        if (end - in >= kBlock) {
            const std::ptrdiff_t ascii = narrowBlock(in, out, false);
            advance(in, out, ascii);
            if (ascii == kBlock)
                continue;
        }
        do {
            if (*in < 0x80) {
                *out++ = static_cast<std::uint8_t>(*in++);
                break;
            }
            const std::ptrdiff_t units = encodeCharacter(in, end, out, keepBytes);
            if (units == 0)
                return;
            in += units;
        } while (in != end && limit - out >= kSlack);
    }
}

void decodeTableRun(const SingleByteTable& table, const std::uint8_t*& in, const std::uint8_t* end,
                    char16_t*& out, const char16_t* limit) {
    while (in != end && limit - out >= kSlack) {
        if (end - in >= kBlock) {
            const std::ptrdiff_t ascii = widenBlock(in, out, true);
            advance(in, out, ascii);
            if (ascii == kBlock)
                continue;
        }
        do {
            const char16_t unit = table.decode(*in);
            if (unit == 0)
                return;
            *out++ = unit;
        } while (++in != end && *in >= 0x80 && limit - out >= kSlack);
    }
}

void encodeTableRun(const SingleByteTable& table, const char16_t*& in, const char16_t* end,
                    std::uint8_t*& out, const std::uint8_t* limit) {
    while (in != end && limit - out >= kSlack) {
        if (end - in >= kBlock) {
            const std::ptrdiff_t ascii = narrowBlock(in, out, true);
            advance(in, out, ascii);
            if (ascii == kBlock)
                continue;
        }
        do {
            const std::uint8_t byte = table.encode(*in);
            if (byte == 0)
                return;
            *out++ = byte;
        } while (++in != end && *in >= 0x80 && limit - out >= kSlack);
    }
}

}  // namespace owlkit
