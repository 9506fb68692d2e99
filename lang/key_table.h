// Keys by the order in which they were first met, found by hash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace owlkit {

class KeyTable {
  public:
    std::size_t size() const { return keys_.size(); }
    const std::u16string& operator[](std::size_t place) const { return keys_[place]; }

    // The place of a key; nothing when it is not there.
    std::optional<std::size_t> find(std::u16string_view key) const;
    // Adds a key that is not there; its place is the last. Changes nothing when memory runs out.
    void add(std::u16string_view key);
    void clear();

    // All places in the ascending order of their keys, by code unit.
    std::vector<std::size_t> sorted() const;

  private:
    std::size_t slotOf(std::u16string_view key) const;
    void grow();

    std::vector<std::u16string> keys_;
    // Open addressing over a power of two: a place and 1, or 0. At least a third stays empty.
    std::vector<std::uint32_t> slots_;
};

}  // namespace owlkit
