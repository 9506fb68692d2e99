#include "lang/key_table.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace owlkit {
namespace {

constexpr std::size_t kFirstSlots = 64;

// FNV-1a over code units; the high bits are folded in, since slots are taken by the low ones.
std::size_t hashOf(std::u16string_view key) {
    std::uint32_t hash = 2166136261;
    for (const char16_t unit : key)
        hash = (hash ^ unit) * 16777619;
    return hash ^ hash >> 15;
}

}  // namespace

// The slot that holds the key, or the empty one where it belongs. There must be slots.
std::size_t KeyTable::slotOf(std::u16string_view key) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hashOf(key) & mask;
    while (slots_[slot] != 0 && keys_[slots_[slot] - 1] != key)
        slot = (slot + 1) & mask;
    return slot;
}

std::optional<std::size_t> KeyTable::find(std::u16string_view key) const {
    const std::uint32_t place = slots_.empty() ? 0 : slots_[slotOf(key)];
    return place == 0 ? std::nullopt : std::optional<std::size_t>(place - 1);
}

void KeyTable::add(std::u16string_view key) {
    if ((keys_.size() + 1) * 3 > slots_.size() * 2)
        grow();
    keys_.emplace_back(key);
    slots_[slotOf(key)] = static_cast<std::uint32_t>(keys_.size());
}

void KeyTable::grow() {
    std::vector<std::uint32_t> old(std::max(slots_.size() * 2, kFirstSlots));
    slots_.swap(old);
    for (std::size_t place = 0; place < keys_.size(); ++place)
        slots_[slotOf(keys_[place])] = static_cast<std::uint32_t>(place + 1);
}

void KeyTable::clear() {
    keys_.clear();
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
