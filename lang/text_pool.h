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
    std::string_view keep(std::string_view text) {
        if (text.size() >= free_.size()) {
            const std::size_t size = std::max(text.size() + 1, kBlock);
            free_ = {takeOver(std::make_unique_for_overwrite<char[]>(size)), size};
        }
        text.copy(free_.data(), text.size());
        const std::string_view kept(free_.data(), text.size());
        free_ = free_.subspan(text.size());
        return kept;
    }

    // Keeps a whole block of texts where it is until clear(). Gives its start.
    char* takeOver(std::unique_ptr<char[]> block) {
        blocks_.push_back(std::move(block));
        return blocks_.back().get();
    }

    void clear() {
        blocks_.clear();
        free_ = {};
    }

  private:
    static constexpr std::size_t kBlock = 2048;  // bytes

    std::vector<std::unique_ptr<char[]>> blocks_;
    std::span<char> free_;  // what is left of the last block that was made here
};

}  // namespace owlkit
