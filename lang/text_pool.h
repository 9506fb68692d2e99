// Texts that stay where they are, packed into blocks: a catalogue has thousands, and all of them go at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace owlkit {

class TextPool {
  public:
    // A copy of `text` that lasts until clear(). Its address is not null, even when it is empty.
    std::u16string_view keep(std::u16string_view text) {
        if (text.size() >= free_.size())
            addBlock(std::max(text.size() + 1, kBlock));
        text.copy(free_.data(), text.size());
        const std::u16string_view kept(free_.data(), text.size());
        free_ = free_.subspan(text.size());
        return kept;
    }

    void clear() {
        blocks_.clear();
        free_ = {};
    }

  private:
    static constexpr std::size_t kBlock = 2048;  // code units

    void addBlock(std::size_t size) {
        blocks_.push_back(std::make_unique_for_overwrite<char16_t[]>(size));
        free_ = {blocks_.back().get(), size};
    }

    std::vector<std::unique_ptr<char16_t[]>> blocks_;
    std::span<char16_t> free_;  // what is left of the last block
};

}  // namespace owlkit
