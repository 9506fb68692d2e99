#include "tools/interlang/xml.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "foundation/text/text.h"
#include "foundation/text/utf16.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

constexpr std::size_t kDepthLimit = 200;

[[noreturn]] void fail(std::string_view text, std::size_t at, const std::string& what) {
    const auto line = std::ranges::count(text.substr(0, at), '\n') + 1;
    throw Failure("line " + std::to_string(line) + ": " + what);
}

bool isBlank(char unit) {
    return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

// Behind the tag that begins at `at`. Values in quotes may hold what ends a tag. A quote anywhere else is
// refused: the parser takes it for a part of a name, so that it would hide from here which elements follow.
std::size_t endOfTag(std::string_view text, std::size_t at) {
    const std::size_t name = text.find_first_not_of("</", at);
    std::size_t next = std::min(text.find_first_of(" \t\r\n/>?", name), text.size());
    if (name < next && text.substr(name, next - name).find_first_of("\"'") != std::string_view::npos)
        fail(text, at, "a quote in a name");
    char quote = 0;
    for (char last = 0; next < text.size(); ++next) {
        const char unit = text[next];
        if (quote != 0) {
            quote = unit == quote ? '\0' : quote;
            continue;
        }
        if (unit == '>')
            return next + 1;
        if (unit == '"' || unit == '\'') {
            if (last != '=')
                fail(text, next, "a quote outside of a value");
            quote = unit;
        }
        if (!isBlank(unit))
            last = unit;
    }
    fail(text, at, "a tag without its end");
}

// Whether XML allows the character.
bool isCharacter(char32_t code) {
    if (code < 32)
        return code == '\t' || code == '\n' || code == '\r';
    return !owlkit::isSurrogate(code) && code <= owlkit::kLastCharacter && code != 0xFFFE && code != 0xFFFF;
}

// Whether a reference, such as "#x41;" or "amp;", stands for a character that XML allows.
bool isReference(std::string_view rest) {
    constexpr std::string_view kNames[] = {"amp;", "lt;", "gt;", "quot;", "apos;"};
    if (!rest.starts_with('#'))
        return std::ranges::any_of(kNames, [&](std::string_view name) { return rest.starts_with(name); });
    const bool isHex = rest.substr(1).starts_with('x');
    rest.remove_prefix(isHex ? 2 : 1);
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), code, isHex ? 16 : 10);
    const auto length = static_cast<std::size_t>(end - rest.data());
    return error == std::errc() && rest.substr(length).starts_with(';') && isCharacter(code);
}

// The parser would take what it does not know as plain text.
void checkReferences(std::string_view text, std::size_t from, std::size_t to) {
    for (std::size_t at = text.find('&', from); at < to; at = text.find('&', at + 1)) {
        if (!isReference(text.substr(at + 1)))
            fail(text, at, "a reference to what is no character");
    }
}

bool isDeclaration(std::string_view text) {
    return owlkit::toLowerAscii(text.substr(0, 5)) == "<?xml" && text.size() > 5 && isBlank(text[5]);
}

void checkMarkup(std::string_view text) {
    const auto behind = [&](std::string_view end, std::size_t from) {
        return std::min(text.find(end, from), text.size() - end.size()) + end.size();
    };
    std::size_t depth = 0;
    for (std::size_t at = text.find('<'), last = 0; at != std::string_view::npos; at = text.find('<', last)) {
        const std::size_t start = at;
        const std::string_view rest = text.substr(at);
        checkReferences(text, last, start);
        if (rest.starts_with("<!--")) {
            at = behind("-->", at + 4);
        } else if (rest.starts_with("<![CDATA[")) {
            at = behind("]]>", at);
        } else if (isDeclaration(rest)) {
            at = endOfTag(text, at);
        } else if (rest.starts_with("<?")) {
            at = behind("?>", at + 2);
        } else if (rest.starts_with("<!")) {
            fail(text, at, "a document type cannot be taken");
        } else {
            at = endOfTag(text, at);
            checkReferences(text, start, at);
            if (rest.starts_with("</"))
                depth -= depth > 0 ? 1 : 0;
            else if (text[at - 2] != '/' && ++depth > kDepthLimit)
                fail(text, at, "elements nested more than " + std::to_string(kDepthLimit) + " deep");
        }
        last = at;
    }
}

void checkCharset(const rapidxml::xml_document<char>& document) {
    const XmlNode* first = document.first_node();
    if (first->type() != rapidxml::node_declaration)
        return;
    const std::string name = owlkit::toLowerAscii(attribute(*first, "encoding"));
    if (!name.empty() && name != "utf-8" && name != "utf-16" && name != "us-ascii")
        throw Failure("the charset is " + name + ", not UTF-8 or UTF-16");
}

std::string_view nameOf(const XmlNode& element) {
    return {element.name(), element.name_size()};
}

// What `prefix` stands for at the element.
std::string namespaceOf(const XmlNode* element, std::string_view prefix) {
    const std::string name = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
    for (; element != nullptr; element = element->parent()) {
        if (const auto* declaration = element->first_attribute(name.c_str()))
            return {declaration->value(), declaration->value_size()};
    }
    return {};
}

}  // namespace

XmlDocument::XmlDocument(std::string text) : text_(std::move(text)) {
    const std::string original = text_;
    if (!isUtf8(original))
        throw Failure("bytes that are not UTF-8");
    const auto control = std::ranges::find_if(
        original, [](char unit) { return static_cast<unsigned char>(unit) < 32 && !isBlank(unit); });
    if (control != original.end())
        fail(original, static_cast<std::size_t>(control - original.begin()), "a control character");
    checkMarkup(original);
    try {
        document_.parse<rapidxml::parse_validate_closing_tags | rapidxml::parse_declaration_node>(
            text_.data());
    } catch (const rapidxml::parse_error& error) {
        fail(original, static_cast<std::size_t>(error.where<char>() - text_.data()), error.what());
    }
    for (const XmlNode* node = document_.first_node(); node != nullptr; node = node->next_sibling()) {
        if (node->type() != rapidxml::node_element)
            continue;
        if (root_ != nullptr)
            throw Failure("a second element beside the outermost one");
        root_ = node;
    }
    if (root_ == nullptr)
        throw Failure("no element in it");
    checkCharset(document_);
}

std::string_view localName(const XmlNode& element, bool (*accepted)(std::string_view)) {
    const std::string_view name = nameOf(element);
    const std::size_t colon = name.find(':');
    const bool hasPrefix = colon != std::string_view::npos;
    const std::string space = namespaceOf(&element, hasPrefix ? name.substr(0, colon) : std::string_view());
    if (!accepted(space))
        return {};
    return hasPrefix ? name.substr(colon + 1) : name;
}

std::string valueOf(const rapidxml::xml_base<char>& node) {
    return {node.value(), node.value_size()};
}

// The parser leaves what stands before a tag as it was, and makes no node of blanks alone.
bool followsBlank(const XmlNode& element) {
    return isBlank(element.name()[-2]);
}

std::string attribute(const XmlNode& element, const char* name) {
    const auto* found = element.first_attribute(name);
    return found == nullptr ? std::string() : valueOf(*found);
}

std::string xmlEscaped(std::string_view text) {
    std::string result;
    for (const char unit : text) {
        switch (unit) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += unit;
        }
    }
    return result;
}

}  // namespace translators
