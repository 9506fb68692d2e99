#include "foundation/path/path_list.h"

#include <algorithm>
#include <utility>

namespace owlkit {

PathList::PathList(std::initializer_list<std::u16string_view> paths) {
    for (const std::u16string_view path : paths)
        append(path);
}

PathList PathList::fromText(std::u16string text) {
    PathList list;
    list.text_ = std::move(text);
    list.text_.resize(list.text_.rfind(u'\0') + 1);
    return list;
}

void PathList::append(std::u16string_view path) {
    // Or memory that runs out would leave a path without its zero.
    text_.reserve(text_.size() + path.size() + 1);
    text_ += path;
    text_ += u'\0';
}

std::size_t PathList::count() const {
    return static_cast<std::size_t>(std::ranges::count(text_, u'\0'));
}

std::u16string_view PathList::first() const {
    return empty() ? std::u16string_view() : *begin();
}

}  // namespace owlkit
