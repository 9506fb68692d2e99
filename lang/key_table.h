// Keys in UTF-8 by the order in which they were first met, found by hash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace owlkit {

class KeyTable {
  public:
    std::size_t size() const { return keys_.size(); }
    std::string_view operator[](std::size_t place) const { return keys_[place]; }

    // Makes room for so many keys in all, which saves moving them as they come.
    void reserve(std::size_t count);
    // The place of a key; nothing when it is not there.
    std::optional<std::size_t> find(std::u16string_view key) const;
    // The same, but a key that is not there is added behind the last; it must stay where it is. Changes
    // nothing when memory runs out.
    std::size_t findOrAdd(std::string_view key);
    void clear();

  private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = 0;  // of the key, from 1; 0 for none
    };

    std::size_t slotOf(std::string_view key, std::uint32_t hash) const;
    std::optional<std::size_t> findUtf8(std::string_view key) const;
    void makeSlots(std::size_t keys);

    std::vector<std::string_view> keys_;
    std::vector<Slot> slots_;  // open addressing over a power of two; at least a third stays empty
};

}  // namespace owlkit
