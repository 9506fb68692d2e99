// XLIFF 1.2.
#include <algorithm>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <sstream>

#include "foundation/text/text.h"
#include "tools/interlang/exchange.h"
#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

using Tree = boost::property_tree::ptree;

constexpr const char* kFinalStates[] = {"final", "signed-off", "translated"};

Tree unitToTree(const Unit& unit) {
    Tree tree;
    tree.put("<xmlattr>.id", unit.key);
    tree.put("<xmlattr>.resname", unit.key);
    tree.put("<xmlattr>.xml:space", "preserve");
    if (unit.target)
        tree.put("<xmlattr>.approved", "yes");  // without it, programs take the target for a guess
    tree.put("source", unit.source);
    if (unit.target) {
        Tree& target = tree.put("target", *unit.target);
        target.put("<xmlattr>.state", unit.target->empty() ? "final" : "translated");
    }
    return tree;
}

// The text of an element, without the blanks around it, which are never written as they are. Programs may
// wrap it, whole or in segments, in "mrk" elements. Parsers hand over each line break as one line feed, but
// this one does not.
std::string elementText(const Tree& tree, const std::string& key) {
    std::string text = tree.data();
    const bool wrapped = owlkit::trim(std::string_view(text)).empty();
    for (const auto& [name, child] : tree) {
        if (name == "<xmlattr>")
            continue;
        if (name != "mrk" || !wrapped)
            throw Failure("elements within a text cannot be taken: " + key);
        text += elementText(child, key);
    }
    return owlkit::replaceAll(std::string(owlkit::trim(std::string_view(text))), "\r\n", "\n");
}

// Whether a translator still has to look at a target in this state.
bool isUnfinished(const std::string& state) {
    return state == "new" || state.starts_with("needs-");
}

Unit treeToUnit(const Tree& tree) {
    Unit unit{tree.get("<xmlattr>.resname", tree.get("<xmlattr>.id", "")), {}, {}};
    if (unit.key.empty())
        throw Failure("a trans-unit without id");
    if (const auto source = tree.get_child_optional("source"))
        unit.source = elementText(*source, unit.key);
    if (const auto target = tree.get_child_optional("target")) {
        std::string text = elementText(*target, unit.key);
        const std::string state = target->get("<xmlattr>.state", "");
        if (text.empty() ? std::ranges::find(kFinalStates, state) != std::end(kFinalStates)
                         : !isUnfinished(state))
            unit.target = std::move(text);
    }
    return unit;
}

// Units may stand in groups.
void collect(const Tree& tree, std::vector<Unit>& units) {
    for (const auto& [name, child] : tree) {
        if (name == "trans-unit")
            units.push_back(treeToUnit(child));
        else if (name == "body" || name == "group")
            collect(child, units);
    }
}

}  // namespace

std::string writeXliff(const Exchange& exchange, const std::string& original) {
    Tree file;
    file.put("<xmlattr>.original", original);
    file.put("<xmlattr>.source-language", exchange.source);
    file.put("<xmlattr>.target-language", exchange.language);
    file.put("<xmlattr>.datatype", "plaintext");
    Tree& body = file.put_child("body", {});
    for (const Unit& unit : exchange.units)
        body.add_child("trans-unit", unitToTree(unit));
    Tree root;
    root.put("xliff.<xmlattr>.version", "1.2");
    root.put("xliff.<xmlattr>.xmlns", "urn:oasis:names:tc:xliff:document:1.2");
    root.add_child("xliff.file", file);
    std::ostringstream out;
    boost::property_tree::write_xml(out, root,
                                    boost::property_tree::xml_writer_make_settings<std::string>(' ', 2));
    return out.str();
}

Exchange readXliff(const std::string& bytes) {
    if (!isUtf8(bytes))
        throw Failure("bytes that are not UTF-8");
    Tree root;
    try {
        std::istringstream in(bytes);
        boost::property_tree::read_xml(in, root, boost::property_tree::xml_parser::no_comments);
    } catch (const boost::property_tree::xml_parser_error& error) {
        throw Failure("line " + std::to_string(error.line()) + ": " + error.message());
    }
    const auto xliff = root.get_child_optional("xliff");
    if (!xliff)
        throw Failure("no XLIFF");
    Exchange exchange;
    for (const auto& [name, file] : *xliff) {
        if (name != "file")
            continue;
        const std::string language = file.get("<xmlattr>.target-language", "");
        if (!exchange.language.empty() && language != exchange.language)
            throw Failure("several target languages");
        exchange.language = language;
        exchange.source = file.get("<xmlattr>.source-language", "");
        collect(file, exchange.units);
    }
    return exchange;
}

}  // namespace translators
