#include "lang/key_table.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace owlkit {
namespace {

constexpr std::size_t kFirstSlots = 64;

// Four code units at a time: multiplied, and the high half folded in, since slots are taken by the low bits.
std::uint32_t hashOf(std::u16string_view key) {
    std::uint64_t hash = key.size();
    while (!key.empty()) {
        std::uint64_t units = 0;
        const std::size_t count = std::min<std::size_t>(key.size(), 4);
        std::memcpy(&units, key.data(), count * sizeof(char16_t));
        hash = (hash ^ units) * 0x9E3779B97F4A7C15;
        hash ^= hash >> 32;
        key.remove_prefix(count);
    }
    return static_cast<std::uint32_t>(hash);
}

}  // namespace

// The slot that holds the key, or the empty one where it belongs. There must be slots.
std::size_t KeyTable::slotOf(std::u16string_view key, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    while (slots_[at].number != 0 && (slots_[at].hash != hash || keys_[slots_[at].number - 1] != key))
        at = (at + 1) & mask;
    return at;
}

std::optional<std::size_t> KeyTable::find(std::u16string_view key) const {
    const std::uint32_t number = slots_.empty() ? 0 : slots_[slotOf(key, hashOf(key))].number;
    return number == 0 ? std::nullopt : std::optional<std::size_t>(number - 1);
}

std::size_t KeyTable::findOrAdd(std::u16string_view key) {
    if ((keys_.size() + 1) * 3 > slots_.size() * 2)
        grow();
    const std::uint32_t hash = hashOf(key);
    Slot& slot = slots_[slotOf(key, hash)];
    if (slot.number == 0) {
        keys_.push_back(texts_.keep(key));
        slot = {hash, static_cast<std::uint32_t>(keys_.size())};
    }
    return slot.number - 1;
}

void KeyTable::grow() {
    std::vector<Slot> larger(std::max(slots_.size() * 2, kFirstSlots));
    slots_.swap(larger);
    for (const Slot& slot : larger)
        if (slot.number != 0)
            slots_[slotOf(keys_[slot.number - 1], slot.hash)] = slot;
}

void KeyTable::clear() {
    keys_.clear();
    texts_.clear();
    slots_.clear();
}

std::vector<std::size_t> KeyTable::sorted() const {
    std::vector<std::size_t> places(keys_.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::sort(places.begin(), places.end(),
              [this](std::size_t a, std::size_t b) { return keys_[a] < keys_[b]; });
    return places;
}

}  // namespace owlkit
