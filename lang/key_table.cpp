#include "lang/key_table.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

#include "foundation/charset/conversion_runs.h"
#include "foundation/charset/convert.h"

namespace owlkit {
namespace {

constexpr std::size_t kFirstKeys = 42;  // for 64 slots
constexpr std::size_t kUsualKey = 64;   // code units; a longer key is converted on the heap
constexpr std::size_t kMostOfUnit = 3;  // bytes that a code unit becomes

std::uint64_t eightBytes(const char* from) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

// Eight bytes at a time, the last eight again for the rest. A product's bits hang on lower ones only, but
// keys differ in their last bytes: so the high half is folded in after each, and taken in the end.
std::uint32_t hashOf(std::string_view key) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    std::uint64_t hash = key.size();
    const auto take = [&hash](std::uint64_t bytes) {
        hash = (hash ^ bytes) * kFactor;
        hash ^= hash >> 32;
    };
    const std::size_t whole = key.size() / 8 * 8;
    for (std::size_t at = 0; at < whole; at += 8)
        take(eightBytes(key.data() + at));
    std::uint64_t rest = 0;
    if (whole == 0)
        std::memcpy(&rest, key.data(), key.size());
    else if (whole != key.size())
        rest = eightBytes(key.data() + key.size() - 8);
    take(rest);
    return static_cast<std::uint32_t>(hash * kFactor >> 32);
}

}  // namespace

// The slot that holds the key, or the empty one where it belongs. There must be slots.
std::size_t KeyTable::slotOf(std::string_view key, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    while (slots_[at] != 0 && (((slots_[at] ^ hash) & ~mask) != 0 || keys_[numberIn(at) - 1] != key))
        at = (at + 1) & mask;
    return at;
}

std::uint32_t KeyTable::numberIn(std::size_t slot) const {
    return slots_[slot] & static_cast<std::uint32_t>(slots_.size() - 1);
}

std::optional<std::size_t> KeyTable::find(std::u16string_view key) const {
    if (key.size() > kUsualKey)
        return find(ToNarrow(key, kCharsetUtf8));
    std::uint8_t bytes[kUsualKey * kMostOfUnit + kRunSlack];
    const char16_t* in = key.data();
    std::uint8_t* out = bytes;
    encodeUtf8Run(in, in + key.size(), out, std::end(bytes), false);
    return find(
        std::string_view(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(out - bytes)));
}

std::optional<std::size_t> KeyTable::find(std::string_view key) const {
    const std::uint32_t number = slots_.empty() ? 0 : numberIn(slotOf(key, hashOf(key)));
    return number == 0 ? std::nullopt : std::optional<std::size_t>(number - 1);
}

std::size_t KeyTable::findOrAdd(std::string_view key) {
    if ((keys_.size() + 1) * 3 > slots_.size() * 2)
        makeSlots(std::max(keys_.size() * 2, kFirstKeys));
    const std::uint32_t hash = hashOf(key);
    const std::size_t slot = slotOf(key, hash);
    if (slots_[slot] == 0) {
        keys_.push_back(key);
        fill(slot, hash, keys_.size());
    }
    return numberIn(slot) - 1;
}

void KeyTable::prefetch(std::string_view key) const {
    if (!slots_.empty())
        _mm_prefetch(reinterpret_cast<const char*>(&slots_[hashOf(key) & (slots_.size() - 1)]), _MM_HINT_T0);
}

void KeyTable::fill(std::size_t slot, std::uint32_t hash, std::size_t number) {
    const auto mask = static_cast<std::uint32_t>(slots_.size() - 1);
    slots_[slot] = (hash & ~mask) | static_cast<std::uint32_t>(number);
}

void KeyTable::reserve(std::size_t count) {
    keys_.reserve(count);
    if (count * 3 > slots_.size() * 2)
        makeSlots(count);
}

// As many slots as so many keys need.
void KeyTable::makeSlots(std::size_t keys) {
    slots_ = std::vector<std::uint32_t>(std::bit_ceil(keys + (keys + 1) / 2));
    for (std::size_t number = 1; number <= keys_.size(); ++number) {
        const std::uint32_t hash = hashOf(keys_[number - 1]);
        fill(slotOf(keys_[number - 1], hash), hash, number);
    }
}

void KeyTable::clear() {
    keys_.clear();
    slots_.clear();
}

}  // namespace owlkit
