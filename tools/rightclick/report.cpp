#include "tools/rightclick/report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "foundation/text/number.h"
#include "foundation/text/utf16.h"
#include "tools/rightclick/failure.h"
#include "tools/rightclick/text.h"

namespace rightclick {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kKindNames[] = {"files", "drives", "bin"};
constexpr std::size_t kIndent = 4;

const char* kindName(nmshell::SelectionKind kind) {
    return kKindNames[static_cast<std::size_t>(kind)];
}

const char* stateName(const MenuEntry& entry) {
    return entry.hidden ? "hidden" : entry.grayed ? "grayed" : "enabled";
}

Json bitmapToJson(int bitmap) {
    if (bitmap == kOtherBitmap)
        return "other";
    return bitmap == kNoBitmap ? Json(nullptr) : Json(bitmap);
}

Json entriesToJson(const std::vector<MenuEntry>& entries) {
    Json list = Json::array();
    for (const MenuEntry& entry : entries) {
        Json item;
        item["type"] = entry.separator ? "separator" : entry.submenu ? "submenu" : "command";
        if (!entry.separator) {
            item["text"] = utf8(entry.text);
            item["state"] = stateName(entry);
            item["bitmap"] = bitmapToJson(entry.bitmap);
        }
        item["id"] = entry.id;
        if (entry.isOurs())
            item["offset"] = entry.id - kFirstId;
        if (entry.submenu)
            item["entries"] = entriesToJson(entry.children);
        list.push_back(std::move(item));
    }
    return list;
}

Json pickToJson(const Pick& pick) {
    Json starts = Json::array();
    for (const Start& start : pick.starts)
        starts.push_back(
            {{"verb", utf8(start.verb)}, {"file", utf8(start.file)}, {"parameters", utf8(start.parameters)}});
    return {{"offset", pick.offset}, {"result", hexadecimal(pick.result)}, {"starts", std::move(starts)}};
}

// How many columns a text takes: its characters, not its code units.
std::size_t columns(std::u16string_view text) {
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, owlkit::isLowSurrogate));
}

std::size_t widest(const std::vector<MenuEntry>& entries, std::size_t indent) {
    std::size_t width = 0;
    for (const MenuEntry& entry : entries)
        width = std::max({width, indent + columns(entry.text), widest(entry.children, indent + kIndent)});
    return width;
}

std::string idColumn(const MenuEntry& entry) {
    std::string column = entry.submenu ? "submenu" : "";
    if (entry.isOurs())
        column = "offset " + owlkit::formatNumber<char>(entry.id - kFirstId);
    column.resize(std::max<std::size_t>(column.size(), 10), ' ');
    std::string id = "-";
    if (entry.id != 0)
        id = "0x" + owlkit::formatNumber<char>(entry.id, owlkit::NumberFormat::UpperHex, 4);
    id.resize(std::max<std::size_t>(id.size(), 8), ' ');
    return column + id;
}

std::string bitmapColumn(int bitmap) {
    if (bitmap == kNoBitmap)
        return {};
    return bitmap == kOtherBitmap ? "  bitmap of another" : "  bitmap " + owlkit::formatNumber<char>(bitmap);
}

void append(std::string& text, const std::vector<MenuEntry>& entries, std::size_t indent, std::size_t width) {
    for (const MenuEntry& entry : entries) {
        text.append(indent, ' ');
        if (entry.separator) {
            text += "--------\n";
            continue;
        }
        text += utf8(entry.text);
        text.append(width - indent - columns(entry.text) + 3, ' ');
        text += idColumn(entry) + stateName(entry) + bitmapColumn(entry.bitmap) + '\n';
        append(text, entry.children, indent + kIndent, width);
    }
}

std::string pickToText(const Pick& pick, bool commands) {
    std::string text = (commands ? "Invoke " : "InvokeCommand ") + hexadecimal(pick.result) + '\n';
    for (const Start& start : pick.starts) {
        text += utf8(start.verb) + "  " + utf8(start.file);
        text += start.parameters.empty() ? "\n" : ' ' + utf8(start.parameters) + '\n';
    }
    return text;
}

}  // namespace

std::string toJson(const Report& report) {
    Json json;
    json["selection"] = kindName(report.kind);
    json["paths"] = Json::array();
    for (const std::u16string& path : report.paths)
        json["paths"].push_back(utf8(path));
    json["dataObject"] = report.dataObject;
    json["result"] = hexadecimal(report.result);
    json[report.commands ? "commands" : "identifiers"] = report.identifiers;
    json["entries"] = entriesToJson(report.entries);
    if (report.pick)
        json["pick"] = pickToJson(*report.pick);
    if (report.helpText)
        json["helpText"] = {{"offset", report.helpText->offset},
                            {"result", hexadecimal(report.helpText->result)},
                            {"text", utf8(report.helpText->text)}};
    if (report.picture)
        json["picture"] = utf8(*report.picture);
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string toText(const Report& report) {
    std::string text;
    if (report.helpText)
        text += FAILED(report.helpText->result) ? (report.commands ? "GetToolTip " : "GetCommandString ") +
                                                      hexadecimal(report.helpText->result) + '\n'
                                                : utf8(report.helpText->text) + '\n';
    if (report.pick)
        text += pickToText(*report.pick, report.commands);
    if (report.picture)
        text += "wrote " + utf8(*report.picture) + '\n';
    if (!text.empty())
        return text;
    text = std::string(kindName(report.kind)) +
           (report.commands ? ": CreateInstance " : ": QueryContextMenu ") + hexadecimal(report.result) +
           ", " + owlkit::formatNumber<char>(report.identifiers) +
           (report.commands ? " commands\n" : " identifiers\n");
    append(text, report.entries, kIndent, widest(report.entries, kIndent));
    return text;
}

}  // namespace rightclick
