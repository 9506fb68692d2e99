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
    std::optional<std::size_t> find(std::string_view key) const;
    std::optional<std::size_t> find(std::u16string_view key) const;
    // The same, but a key that is not there is added behind the last; it must stay where it is. Changes
    // nothing when memory runs out.
    std::size_t findOrAdd(std::string_view key);
    // Has the processor fetch what findOrAdd(key) looks at, for when that comes a while later.
    void prefetch(std::string_view key) const;
    void clear();

  private:
    std::size_t slotOf(std::string_view key, std::uint32_t hash) const;
    std::uint32_t numberIn(std::size_t slot) const;
    void fill(std::size_t slot, std::uint32_t hash, std::size_t number);
    void makeSlots(std::size_t keys);

    std::vector<std::string_view> keys_;
    // Open addressing over a power of two; at least a third stays empty, which is 0. The low bits, as many as
    // number the slots, are the number of the key, from 1, and the others are those of its hash.
    std::vector<std::uint32_t> slots_;
};

}  // namespace owlkit
