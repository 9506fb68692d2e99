// Many paths in one text, the form in which a selection travels.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>

namespace owlkit {

// The text is every path followed by its own zero character, without one more at the end; each path is what
// stands before a zero, so an empty one counts as well.
class PathList {
  public:
    class Iterator;

    PathList() = default;
    PathList(std::initializer_list<std::u16string_view> paths);

    // The list of a text that comes from outside. What follows its last zero character is dropped: a path
    // that was cut short could be the name of another file.
    static PathList fromText(std::u16string text);

    // Adds a path, which must hold no zero character.
    void append(std::u16string_view path);

    bool empty() const { return text_.empty(); }
    std::size_t count() const;

    // The first path; empty when there is none.
    std::u16string_view first() const;

    // The paths as views into text(), good until the list changes.
    Iterator begin() const;
    Iterator end() const;

    const std::u16string& text() const { return text_; }

    bool operator==(const PathList&) const = default;

  private:
    std::u16string text_;
};

class PathList::Iterator {
  public:
    using value_type = std::u16string_view;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    explicit Iterator(std::u16string_view rest) : rest_(rest) {}

    std::u16string_view operator*() const { return rest_.substr(0, rest_.find(u'\0')); }
    Iterator& operator++() {
        rest_.remove_prefix((**this).size() + 1);
        return *this;
    }
    Iterator operator++(int) {
        const Iterator before = *this;
        ++*this;
        return before;
    }
    // Of two places in one list.
    bool operator==(const Iterator& other) const { return rest_.size() == other.rest_.size(); }

  private:
    std::u16string_view rest_;
};
static_assert(std::forward_iterator<PathList::Iterator>);

inline PathList::Iterator PathList::begin() const {
    return Iterator(text_);
}

inline PathList::Iterator PathList::end() const {
    return Iterator();
}

}  // namespace owlkit
