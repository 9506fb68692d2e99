// One right-click as the shell does it: make the extension's object, hand it the selection, ask for its
// entries, choose one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/rightclick/client.h"
#include "tools/rightclick/com_pointer.h"

namespace rightclick {

class RightClick {
  public:
    explicit RightClick(Client& client) : client_(client) {}

    // Selects, initializes and queries; afterwards the menu is complete. A Failure when there is no object or
    // it refuses the selection. What QueryContextMenu answered is `result`.
    void open(const Request& request);

    HRESULT result() const { return result_; }
    // How many identifiers the answer reserves.
    std::uint32_t identifiers() const;

    // The entries of the extension, or of the whole menu.
    std::vector<MenuEntry> entries(bool all);

    // InvokeCommand with an offset as the verb.
    HRESULT pick(std::uint32_t offset);

    // GetCommandString with GCS_HELPTEXTW; `text` is empty on failure.
    HRESULT helpText(std::uint32_t offset, std::u16string& text);

    // The position in the menu of the submenu that `name` means: "nullmark", "trash", or the offset of an
    // entry in it; -1 for "none", and when the menu got no entries.
    int submenuPosition(const std::string& name);

  private:
    void initialize(const Request& request);

    Client& client_;
    ComPointer<IShellExtInit> extension_;
    ComPointer<IContextMenu> menu_;
    std::uint32_t position_ = 0;  // of the first entry that is ours
    HRESULT result_ = E_FAIL;
};

}  // namespace rightclick
