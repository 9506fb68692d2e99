#include "foundation/text/text.h"

#include <type_traits>

namespace owlkit {
namespace {

template <class Char>
bool isBlank(Char c) {
    return static_cast<std::make_unsigned_t<Char>>(c) <= 32;
}

template <class Char>
std::basic_string_view<Char> withoutLeadingBlanks(std::basic_string_view<Char> text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

template <class Char>
std::basic_string_view<Char> withoutBlanks(std::basic_string_view<Char> text) {
    text = withoutLeadingBlanks(text);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

template <class Char>
std::basic_string<Char> replaced(std::basic_string_view<Char> text, std::basic_string_view<Char> from,
                                 std::basic_string_view<Char> to) {
    std::basic_string<Char> out;
    out.reserve(text.size());
    while (!from.empty()) {
        const std::size_t at = text.find(from);
        if (at == text.npos)
            break;
        out += text.substr(0, at);
        out += to;
        text.remove_prefix(at + from.size());
    }
    out += text;
    return out;
}

template <class Char>
std::basic_string<Char> lowered(std::basic_string_view<Char> text) {
    std::basic_string<Char> out(text);
    for (Char& c : out) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<Char>(c + ('a' - 'A'));
    }
    return out;
}

}  // namespace

std::string_view trimLeft(std::string_view text) {
    return withoutLeadingBlanks(text);
}
std::u16string_view trimLeft(std::u16string_view text) {
    return withoutLeadingBlanks(text);
}

std::string_view trim(std::string_view text) {
    return withoutBlanks(text);
}
std::u16string_view trim(std::u16string_view text) {
    return withoutBlanks(text);
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    return replaced(text, from, to);
}
std::u16string replaceAll(std::u16string_view text, std::u16string_view from, std::u16string_view to) {
    return replaced(text, from, to);
}

std::string toLowerAscii(std::string_view text) {
    return lowered(text);
}
std::u16string toLowerAscii(std::u16string_view text) {
    return lowered(text);
}

}  // namespace owlkit
