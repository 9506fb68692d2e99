#include <nlohmann/json.hpp>

#include "tools/common/text.h"
#include "tools/setup/status.h"

namespace setup {
namespace {

using Json = nlohmann::ordered_json;
using tools::utf8;

constexpr const char* kStateNames[] = {"present", "missing", "different"};

const char* stateName(EntryState state) {
    return kStateNames[static_cast<std::size_t>(state)];
}

// A line whose first column names what it is about.
std::string row(std::string name, const std::string& text) {
    name.resize(11, ' ');
    return name + text + '\n';
}

std::string entryRows(const EntryStatus& status) {
    const std::string name = status.entry.name.empty() ? "(default)" : utf8(status.entry.name);
    std::string text = row(stateName(status.state), "HKEY_LOCAL_MACHINE\\" + utf8(status.entry.path) + " : " +
                                                        name + " = " + utf8(status.entry.text));
    if (status.state == EntryState::Different)
        text += row("", "found: " + utf8(status.found));
    return text;
}

std::string settingRow(const Setting& setting) {
    const std::string value = setting.value.empty() ? "that of the regional format" : utf8(setting.value);
    const char* origin = !setting.stored   ? " (default)"
                         : !setting.usable ? " (default: the value that is there has another type)"
                                           : "";
    return row("setting", utf8(setting.name) + " = " + value + origin);
}

std::string languageRows(const tools::Languages& languages) {
    std::string text = row("languages", std::to_string(languages.count) + " in " + utf8(languages.folder));
    if (!languages.failure.empty())
        text += row("error", tools::whyNoTexts(languages));
    if (!languages.settingKnown)
        text += row("warning", "no language file has the language " + utf8(languages.setting));
    if (!languages.shown.empty())
        text += row("language", utf8(languages.shown) + ", " + utf8(languages.shownName) +
                                    (languages.setting.empty()
                                         ? " (the regional format's is " + utf8(languages.regional) + ")"
                                         : ""));
    return text;
}

Json languagesToJson(const tools::Languages& languages) {
    return {{"folder", utf8(languages.folder)},       {"count", languages.count},
            {"error", tools::whyNoTexts(languages)},  {"setting", utf8(languages.setting)},
            {"settingKnown", languages.settingKnown}, {"regionalFormat", utf8(languages.regional)},
            {"shown", utf8(languages.shown)},         {"shownName", utf8(languages.shownName)}};
}

}  // namespace

std::string toText(const Status& status) {
    std::string text;
    for (const EntryStatus& entry : status.entries)
        text += entryRows(entry);
    if (!status.module.empty()) {
        text += row("module", utf8(status.module) +
                                  (status.version.empty() ? "" : ", version " + utf8(status.version)) +
                                  (status.moduleFault.empty() ? ", loads" : ""));
        if (!status.moduleFault.empty())
            text += row("error", status.moduleFault);
        for (const Intruder& intruder : status.intruders)
            text += row("warning", describe(intruder));
        text += languageRows(status.languages);
    }
    for (const Setting& setting : status.settings)
        text += settingRow(setting);
    return text + row("verdict", status.verdict);
}

std::string toJson(const Status& status) {
    Json entries = Json::array();
    for (const EntryStatus& each : status.entries) {
        entries.push_back({{"state", stateName(each.state)},
                           {"key", "HKEY_LOCAL_MACHINE\\" + utf8(each.entry.path)},
                           {"value", utf8(each.entry.name)},
                           {"expected", utf8(each.entry.text)}});
        if (each.state != EntryState::Missing)
            entries.back()["found"] = utf8(each.found);
    }
    Json warnings = Json::array();
    for (const Intruder& intruder : status.intruders)
        warnings.push_back(describe(intruder));
    Json settings = Json::object();
    for (const Setting& setting : status.settings)
        settings[utf8(setting.name)] = {
            {"value", utf8(setting.value)}, {"stored", setting.stored}, {"usable", setting.usable}};
    const Json result = {
        {"menuAppears", status.menuAppears},
        {"verdict", status.verdict},
        {"module",
         {{"path", utf8(status.module)}, {"version", utf8(status.version)}, {"error", status.moduleFault}}},
        {"folderWarnings", warnings},
        {"languages", languagesToJson(status.languages)},
        {"settings", settings},
        {"registration", entries}};
    return result.dump(4, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace setup
