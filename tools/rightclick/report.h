// What the client prints, as indented text or as JSON.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "contextmenu/selection.h"
#include "platform/com.h"
#include "tools/rightclick/client.h"
#include "tools/rightclick/menu_entry.h"

namespace rightclick {

struct Pick {
    std::uint32_t offset = 0;
    HRESULT result = S_OK;
    std::vector<Start> starts;
};

struct HelpText {
    std::uint32_t offset = 0;
    HRESULT result = S_OK;
    std::u16string text;
};

struct Report {
    nmshell::SelectionKind kind = nmshell::SelectionKind::Files;
    std::vector<std::u16string> paths;
    std::string dataObject;
    bool commands = false;  // of the first level of the menu
    HRESULT result = S_OK;
    std::uint32_t identifiers = 0;
    std::vector<MenuEntry> entries;

    std::optional<Pick> pick;
    std::optional<HelpText> helpText;

    std::optional<std::u16string> picture;  // the file that was written
};

// One JSON object with a line end: everything in `report`, in UTF-8.
std::string toJson(const Report& report);

// For people: what was asked for (a pick, a help text, a picture), or else the entries, one a line.
std::string toText(const Report& report);

}  // namespace rightclick
