// Keys by the order in which they were first met, found by hash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "lang/text_pool.h"

namespace owlkit {

class KeyTable {
  public:
    std::size_t size() const { return keys_.size(); }
    std::u16string_view operator[](std::size_t place) const { return keys_[place]; }

    // The place of a key; nothing when it is not there.
    std::optional<std::size_t> find(std::u16string_view key) const;
    // The same, but a key that is not there is added behind the last. Changes nothing when memory runs out.
    std::size_t findOrAdd(std::u16string_view key);
    void clear();

    // All places in the ascending order of their keys, by code unit.
    std::vector<std::size_t> sorted() const;

  private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = 0;  // of the key, from 1; 0 for none
    };

    std::size_t slotOf(std::u16string_view key, std::uint32_t hash) const;
    void grow();

    TextPool texts_;
    std::vector<std::u16string_view> keys_;
    std::vector<Slot> slots_;  // open addressing over a power of two; at least a third stays empty
};

}  // namespace owlkit
