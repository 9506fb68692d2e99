#include "foundation/codec/base64_groups.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace owlkit {
namespace {

constexpr std::size_t kStepGroups = 4;  // groups that are converted at once

constexpr Base64Letters alphabetOf(std::string_view letters) {
    Base64Letters alphabet = {letters, {}};
    alphabet.valueOf.fill(kNoBase64Letter);
    for (std::size_t i = 0; i < letters.size(); ++i)
        alphabet.valueOf[static_cast<std::uint8_t>(letters[i])] = static_cast<std::uint8_t>(i);
    alphabet.valueOf['='] = kBase64Padding;
    return alphabet;
}

std::uint32_t bigEndian(const std::uint8_t* bytes) {
    static_assert(std::endian::native == std::endian::little);
    std::uint32_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return __builtin_bswap32(word);
}

// The bits `mask` of each lane, moved.
__m128i moved(__m128i lanes, int left, int mask) {
    const __m128i shifted = left >= 0 ? _mm_slli_epi32(lanes, left) : _mm_srli_epi32(lanes, -left);
    return _mm_and_si128(shifted, _mm_set1_epi32(mask));
}

__m128i all(int byte) {
    return _mm_set1_epi8(static_cast<char>(byte));
}

// The 16 letters of four groups. The codes of A-Z, a-z and 0-9 are runs; only the last two depend on the
// alphabet.
__m128i lettersOf(const Base64Letters& alphabet, __m128i groups) {
    const __m128i values =
        _mm_or_si128(_mm_or_si128(moved(groups, -26, 0x3F), moved(groups, -12, 0x3F00)),
                     _mm_or_si128(moved(groups, 2, 0x3F0000), moved(groups, 16, 0x3F000000)));
    const auto from = [&](int first, int step) {
        return _mm_and_si128(_mm_cmpgt_epi8(values, all(first - 1)), all(step));
    };
    const int step62 = alphabet.letters[62] - ('9' + 1);
    const int step63 = alphabet.letters[63] - (alphabet.letters[62] + 1);
    const __m128i runs = _mm_add_epi8(from(26, 'a' - ('Z' + 1)), from(52, '0' - ('z' + 1)));
    const __m128i rest = _mm_add_epi8(from(62, step62), from(63, step63));
    return _mm_add_epi8(_mm_add_epi8(values, all('A')), _mm_add_epi8(runs, rest));
}

void storeLetters(char* out, __m128i letters) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), letters);
}
void storeLetters(char16_t* out, __m128i letters) {
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(letters, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(letters, zero));
}

// The next 16 characters as bytes; a wide one that is no letter becomes a byte that is none.
__m128i loadLetters(const std::uint8_t* in) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
}
__m128i loadLetters(const char16_t* in) {
    return _mm_packus_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in)),
                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 8)));
}

// The values of 16 letters; false when not all are letters.
bool valuesOf(const Base64Letters& alphabet, __m128i letters, __m128i& values) {
    const auto between = [&](int first, int last) {
        return _mm_and_si128(_mm_cmpgt_epi8(letters, all(first - 1)), _mm_cmpgt_epi8(all(last + 1), letters));
    };
    const auto moved = [&](__m128i which, int by) {
        return _mm_and_si128(which, _mm_add_epi8(letters, all(by)));
    };
    const __m128i upper = between('A', 'Z');
    const __m128i lower = between('a', 'z');
    const __m128i digit = between('0', '9');
    const __m128i is62 = _mm_cmpeq_epi8(letters, all(alphabet.letters[62]));
    const __m128i is63 = _mm_cmpeq_epi8(letters, all(alphabet.letters[63]));
    const __m128i last = _mm_or_si128(_mm_and_si128(is62, all(62)), _mm_and_si128(is63, all(63)));
    values = _mm_or_si128(_mm_or_si128(moved(upper, -'A'), moved(lower, 26 - 'a')),
                          _mm_or_si128(moved(digit, 52 - '0'), last));
    const __m128i known =
        _mm_or_si128(_mm_or_si128(upper, lower), _mm_or_si128(digit, _mm_or_si128(is62, is63)));
    return _mm_movemask_epi8(known) == 0xFFFF;
}

// Writes the 12 bytes of 16 values, and two more.
void storeBytes(char* out, __m128i values) {
    const __m128i pairs = _mm_or_si128(_mm_slli_epi16(_mm_and_si128(values, _mm_set1_epi16(0xFF)), 6),
                                       _mm_srli_epi16(values, 8));  // 12 bits each
    const __m128i groups =
        _mm_madd_epi16(pairs, _mm_set1_epi32(0x11000));  // 24 bits: the first pair is the higher
    const auto storeTwo = [](char* to, __m128i two) {
        const auto lanes = static_cast<std::uint64_t>(_mm_cvtsi128_si64(two));
        const std::uint64_t bytes = __builtin_bswap64(lanes << 40 | lanes >> 32 << 16);
        std::memcpy(to, &bytes, sizeof bytes);
    };
    storeTwo(out, groups);
    storeTwo(out + 6, _mm_unpackhi_epi64(groups, groups));
}

}  // namespace

constexpr Base64Letters kStandardLetters =
    alphabetOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
constexpr Base64Letters kUrlLetters =
    alphabetOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_");

template <class Char>
Char* encodeBase64Groups(const Base64Letters& alphabet, const std::uint8_t* bytes, std::size_t groups,
                         Char* out) {
    // A group more than the step's, since the last of a step is read with the byte behind it.
    for (; groups > kStepGroups; groups -= kStepGroups, bytes += 3 * kStepGroups, out += 4 * kStepGroups) {
        const auto group = [bytes](int i) { return static_cast<int>(bigEndian(bytes + 3 * i)); };
        storeLetters(out, lettersOf(alphabet, _mm_setr_epi32(group(0), group(1), group(2), group(3))));
    }
    for (; groups > 0; --groups, bytes += 3)
        out = encodeBase64Rest(alphabet, bytes, 3, out);
    return out;
}
template char* encodeBase64Groups(const Base64Letters&, const std::uint8_t*, std::size_t, char*);
template char16_t* encodeBase64Groups(const Base64Letters&, const std::uint8_t*, std::size_t, char16_t*);

template <class Char>
Char* encodeBase64Rest(const Base64Letters& alphabet, const std::uint8_t* bytes, std::size_t count,
                       Char* out) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i)
        group = group << 8 | (i < count ? bytes[i] : 0u);
    for (std::size_t i = 0; i <= count; ++i)
        *out++ = static_cast<Char>(alphabet.letters[group >> (18 - 6 * i) & 63]);
    return out;
}
template char* encodeBase64Rest(const Base64Letters&, const std::uint8_t*, std::size_t, char*);
template char16_t* encodeBase64Rest(const Base64Letters&, const std::uint8_t*, std::size_t, char16_t*);

// Steps of 16 characters that are nothing but letters, as long as there is room for what is written behind
// them.
template <class Char>
void Base64Decoder::takeGroups(const Char*& in, const Char* end, char*& out) const {
    __m128i values;
    while (end - in >= 24 && valuesOf(alphabet_, loadLetters(in), values)) {
        storeBytes(out, values);
        in += 4 * kStepGroups;
        out += 3 * kStepGroups;
    }
}

template <class Char>
void Base64Decoder::take(const Char*& in, const Char* end, char*& out) {
    while (in != end && !ended_) {
        if (letters_ == 0)
            takeGroups(in, end, out);
        if (in == end)
            return;
        const std::uint8_t value = valueOf(*in);
        if (value == kNoBase64Letter)
            return;
        ++in;
        if (value == kBase64Padding) {
            ended_ = letters_ >= 2;  // padding that comes sooner says nothing
            continue;
        }
        bits_ = bits_ << 6 | value;
        if (++letters_ < 4)
            continue;
        for (int shift = 16; shift >= 0; shift -= 8)
            *out++ = static_cast<char>(bits_ >> shift);
        bits_ = 0;
        letters_ = 0;
    }
}
template void Base64Decoder::take(const std::uint8_t*&, const std::uint8_t*, char*&);
template void Base64Decoder::take(const char16_t*&, const char16_t*, char*&);

void Base64Decoder::finish(char*& out) const {
    const std::uint32_t group = letters_ == 0 ? 0 : bits_ << 6 * (4 - letters_);
    const int bytes = letters_ == 0 ? 0 : std::max(letters_ - 1, 1);
    for (int i = 0; i < bytes; ++i)
        *out++ = static_cast<char>(group >> (16 - 8 * i));
}

}  // namespace owlkit
