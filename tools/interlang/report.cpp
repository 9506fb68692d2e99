#include "tools/interlang/report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/interlang/text.h"
#include "tools/interlang/text_checks.h"

namespace translators {
namespace {

using Json = nlohmann::ordered_json;

std::string dump(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

const char* severity(Check check) {
    return kindOf(check).error ? "error" : "warning";
}

std::string line(const Finding& finding) {
    std::string text;
    if (!finding.path.empty())
        text += utf8(finding.path) + ':' + std::to_string(finding.line) + ": ";
    text.append(severity(finding.check)).append(": ");
    if (!finding.key.empty())
        text += utf8(printable(finding.language)) + ' ' + utf8(printable(finding.key)) + ": ";
    return text + finding.message + " [" + kindOf(finding.check).name + "]\n";
}

std::string counted(std::size_t count, const char* noun) {
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

// How far the languages are that are not translated whole.
std::string unfinished(const std::vector<Coverage>& languages) {
    std::string text;
    for (const Coverage& row : languages) {
        if (row.untranslated.empty())
            continue;
        text += utf8(row.language) + ": " + std::to_string(row.translated) + " of " +
                std::to_string(row.keys) + " texts are translated, not";
        for (const std::u16string& key : row.untranslated)
            text += ' ' + utf8(key);
        text += '\n';
    }
    return text;
}

Json toJson(const std::vector<Coverage>& languages) {
    Json rows = Json::array();
    for (const Coverage& row : languages)
        rows.push_back({{"language", utf8(row.language)},
                        {"name", utf8(row.name)},
                        {"coverage", percent(row)},
                        {"translated", row.translated},
                        {"asReference", row.asReference},
                        {"empty", row.empty},
                        {"missing", row.missing},
                        {"obsolete", row.obsolete}});
    return rows;
}

std::string padded(std::u16string_view text, std::size_t width) {
    return utf8(text) + std::string(width - std::min(width, columns(text)) + 2, ' ');
}

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

}  // namespace

std::string toText(const CheckResult& result) {
    std::string text;
    for (const Finding& finding : result.findings)
        text += line(finding);
    text += unfinished(result.coverage);
    if (!result.consistencyReport.empty())
        text += '\n' + result.consistencyReport;
    return text + counted(result.errors, "error") + ", " + counted(result.warnings, "warning") + '\n';
}

std::string toJson(const CheckResult& result) {
    Json json;
    json["findings"] = Json::array();
    for (const Finding& finding : result.findings) {
        Json item = {{"severity", severity(finding.check)}, {"check", kindOf(finding.check).name}};
        item["file"] = finding.path.empty() ? Json(nullptr) : Json(utf8(finding.path));
        item["line"] = finding.line;
        item["language"] = utf8(finding.language);
        item["key"] = utf8(finding.key);
        item["message"] = finding.message;
        json["findings"].push_back(std::move(item));
    }
    json["coverage"] = toJson(result.coverage);
    json["consistency"] = result.consistencyReport;
    json["errors"] = result.errors;
    json["warnings"] = result.warnings;
    return dump(json);
}

std::string toText(const std::vector<Coverage>& languages) {
    std::size_t codeWidth = 4, nameWidth = 4;
    for (const Coverage& row : languages) {
        codeWidth = std::max(codeWidth, columns(row.language));
        nameWidth = std::max(nameWidth, columns(row.name));
    }
    std::string text = padded(u"code", codeWidth) + padded(u"name", nameWidth) +
                       "coverage  translated  as reference  empty  missing  obsolete\n";
    for (const Coverage& row : languages) {
        text += padded(row.language, codeWidth) + padded(row.name, nameWidth);
        text += rightAligned(std::to_string(percent(row)) + " %", 8);
        text += rightAligned(std::to_string(row.translated) + '/' + std::to_string(row.keys), 12);
        text +=
            rightAligned(std::to_string(row.asReference), 14) + rightAligned(std::to_string(row.empty), 7);
        text += rightAligned(std::to_string(row.missing), 9) +
                rightAligned(std::to_string(row.obsolete), 10) + '\n';
    }
    return text;
}

std::string toJson(const std::vector<Coverage>& languages, const Reference& reference) {
    Json json;
    json["reference"] = utf8(reference.code);
    json["keys"] = reference.texts.size();
    json["languages"] = toJson(languages);
    return dump(json);
}

}  // namespace translators
