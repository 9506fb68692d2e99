// XLIFF 1.2.
#include <algorithm>

#include "foundation/text/text.h"
#include "tools/interlang/exchange.h"
#include "tools/interlang/text.h"
#include "tools/interlang/xml.h"

namespace translators {
namespace {

constexpr std::string_view kNamespaces[] = {"", "urn:oasis:names:tc:xliff:document:1.1",
                                            "urn:oasis:names:tc:xliff:document:1.2"};
constexpr const char* kFinalStates[] = {"final", "signed-off", "translated"};
constexpr const char* kNeedsReview = "needs-review-translation";

bool isXliff(std::string_view namespaceName) {
    return std::ranges::find(kNamespaces, namespaceName) != std::end(kNamespaces);
}

std::string_view nameOf(const XmlNode& element) {
    return localName(element, isXliff);
}

const XmlNode* child(const XmlNode& element, std::string_view name) {
    for (const XmlNode* node = element.first_node(); node != nullptr; node = node->next_sibling()) {
        if (node->type() == rapidxml::node_element && nameOf(*node) == name)
            return node;
    }
    return nullptr;
}

// What an element holds. Programs may wrap it, whole or in segments, in "mrk" elements; the blanks between
// two of those are one.
std::string content(const XmlNode& element, const std::string& key) {
    std::string own, wrapped;
    bool hasElements = false;
    for (const XmlNode* node = element.first_node(); node != nullptr; node = node->next_sibling()) {
        if (node->type() != rapidxml::node_element) {
            own += valueOf(*node);
            continue;
        }
        if (nameOf(*node) != "mrk")
            throw Failure("elements within a text cannot be taken: " + key);
        const std::string segment = content(*node, key);
        const bool apart =
            hasElements && followsBlank(*node) && !wrapped.ends_with(' ') && !segment.starts_with(' ');
        wrapped += (apart ? " " : "") + segment;
        hasElements = true;
    }
    if (hasElements && !owlkit::trim(std::string_view(own)).empty())
        throw Failure("elements within a text cannot be taken: " + key);
    return hasElements ? wrapped : own;
}

// The text of an element, without the blanks around it, which are never written as they are. Each line break
// counts as one line feed.
std::string elementText(const XmlNode& element, const std::string& key) {
    const std::string text(owlkit::trim(std::string_view(content(element, key))));
    return owlkit::replaceAll(owlkit::replaceAll(text, "\r\n", "\n"), "\r", "\n");
}

// Whether a translator still has to look at a target in this state.
bool isUnfinished(const std::string& state) {
    return state == "new" || state.starts_with("needs-");
}

Unit toUnit(const XmlNode& element) {
    Unit unit;
    unit.key = attribute(element, "resname");
    if (unit.key.empty())
        unit.key = attribute(element, "id");
    if (unit.key.empty())
        throw Failure("a trans-unit without id");
    if (const XmlNode* source = child(element, "source"))
        unit.source = elementText(*source, unit.key);
    if (const XmlNode* target = child(element, "target")) {
        std::string text = elementText(*target, unit.key);
        const std::string state = attribute(*target, "state");
        unit.fuzzy = isUnfinished(state) || (state.empty() && attribute(element, "approved") == "no");
        if (!text.empty() || std::ranges::find(kFinalStates, state) != std::end(kFinalStates))
            unit.target = std::move(text);
    }
    for (const XmlNode* node = element.first_node(); node != nullptr; node = node->next_sibling()) {
        if (node->type() == rapidxml::node_element && nameOf(*node) == "note" &&
            attribute(*node, "from").ends_with("translator"))
            unit.notes.push_back(elementText(*node, unit.key));
    }
    return unit;
}

class Reader {
  public:
    Exchange read(const XmlNode& root) {
        if (nameOf(root) != "xliff")
            throw Failure("no XLIFF 1.2");
        for (const XmlNode* file = root.first_node(); file != nullptr; file = file->next_sibling()) {
            if (file->type() == rapidxml::node_element && nameOf(*file) == "file")
                readFile(*file);
        }
        return std::move(exchange_);
    }

  private:
    void readFile(const XmlNode& file) {
        setLanguage(attribute(file, "target-language"));
        exchange_.source = attribute(file, "source-language");
        collect(file);
    }

    void setLanguage(const std::string& language) {
        if (!exchange_.language.empty() && !language.empty() && language != exchange_.language)
            throw Failure("several target languages");
        if (!language.empty())
            exchange_.language = language;
    }

    // Units may stand in groups.
    void collect(const XmlNode& element) {
        for (const XmlNode* node = element.first_node(); node != nullptr; node = node->next_sibling()) {
            if (node->type() != rapidxml::node_element)
                continue;
            const std::string_view name = nameOf(*node);
            if (name == "trans-unit")
                addUnit(*node);
            else if (name == "body" || name == "group")
                collect(*node);
        }
    }

    // What was PO before has its header as a unit.
    void addUnit(const XmlNode& element) {
        if (attribute(element, "restype") != "x-gettext-domain-header")
            return exchange_.units.push_back(toUnit(element));
        const XmlNode* target = child(element, "target");
        const std::string header =
            '\n' + (target == nullptr ? "" : elementText(*target, "the header")) + '\n';
        if (const std::size_t at = header.find("\nLanguage:"); at != std::string::npos) {
            const std::string_view line = std::string_view(header).substr(at + 10);
            setLanguage(std::string(owlkit::trim(line.substr(0, line.find('\n')))));
        }
    }

    Exchange exchange_;
};

std::string element(const std::string& start, std::string_view text) {
    return "        <" + start + '>' + xmlEscaped(text) + "</" + start.substr(0, start.find(' ')) + ">\n";
}

std::string unitElement(const Unit& unit) {
    const std::string key = xmlEscaped(unit.key);
    std::string xml = "      <trans-unit id=\"" + key + "\" resname=\"" + key + "\" xml:space=\"preserve\"";
    if (unit.target)  // without it, programs take the target for a guess
        xml += unit.fuzzy ? " approved=\"no\"" : " approved=\"yes\"";
    xml += ">\n" + element("source", unit.source);
    if (unit.target) {
        const std::string state = unit.fuzzy ? kNeedsReview : unit.target->empty() ? "final" : "translated";
        xml += element("target state=\"" + state + '"', *unit.target);
    }
    for (const std::string& note : unit.notes)
        xml += element("note from=\"translator\"", note);
    for (const std::string& hint : unit.hints)
        xml += element("note from=\"developer\"", hint);
    if (unit.previous)
        xml += element("note from=\"developer\"", "Translated from: " + *unit.previous);
    return xml + "      </trans-unit>\n";
}

}  // namespace

std::string writeXliff(const Exchange& exchange, const std::string& original) {
    std::string date = exchange.date;  // 2026-01-31 12:00+0000 as 2026-01-31T12:00:00Z
    date.replace(date.find(' '), 1, "T").replace(date.find('+'), std::string::npos, ":00Z");
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<xliff version=\"1.2\" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">\n"
        "  <file original=\"" +
        xmlEscaped(original) + "\" source-language=\"" + xmlEscaped(exchange.source) + '"';
    if (!exchange.language.empty())
        xml += " target-language=\"" + xmlEscaped(exchange.language) + '"';
    xml += " datatype=\"plaintext\" date=\"" + date + "\">\n    <body>\n";
    for (const Unit& unit : exchange.units)
        xml += unitElement(unit);
    return xml + "    </body>\n  </file>\n</xliff>\n";
}

Exchange readXliff(const std::string& bytes) {
    const XmlDocument document(bytes);
    return Reader().read(document.root());
}

}  // namespace translators
