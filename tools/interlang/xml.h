// XML that may come from anywhere, read by RapidXML: what would overflow its recursion or be cut off by it is
// refused beforehand.
#pragma once

// RapidXML because it is headers alone, which the cross build takes as they are; of the libraries that read
// XML without recursion Debian has no source that it could build in.
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <string_view>

namespace translators {

using XmlNode = rapidxml::xml_node<char>;

class XmlDocument {
  public:
    // UTF-8. Throws Failure, with the line, for what is not well-formed, nested too deeply, has a document
    // type, an entity of its own or several roots, or says that it is in another charset.
    explicit XmlDocument(std::string text);

    const XmlNode& root() const { return *root_; }

  private:
    std::string text_;  // the nodes point into it
    rapidxml::xml_document<char> document_;
    const XmlNode* root_ = nullptr;
};

// The name without its prefix; empty where the element belongs to another namespace than `accepted` says.
std::string_view localName(const XmlNode& element, bool (*accepted)(std::string_view namespaceName));

// Whether there are blanks before the element's tag.
bool followsBlank(const XmlNode& element);

// The value of an attribute or a piece of text.
std::string valueOf(const rapidxml::xml_base<char>& node);

// The attribute's value, or an empty one.
std::string attribute(const XmlNode& element, const char* name);

// With what XML gives a meaning as references.
std::string xmlEscaped(std::string_view text);

}  // namespace translators
