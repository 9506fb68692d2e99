// The first level of the menu as the shell comes by it: make the root command, ask it and the commands below
// it about the selection, choose one.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tools/rightclick/client.h"
#include "tools/rightclick/com_pointer.h"

namespace rightclick {

class CommandMenu {
  public:
    explicit CommandMenu(Client& client) : client_(client) {}

    // Selects and reads the whole tree. A Failure when there is no root command, or when one of the commands
    // does not answer.
    void open(const Request& request);

    // What making the root command answered.
    HRESULT result() const { return S_OK; }
    // How many commands can be chosen or are disabled.
    std::uint32_t identifiers() const { return static_cast<std::uint32_t>(commands_.size()); }

    // The root, with what is below it unless it is hidden.
    std::vector<MenuEntry> entries(bool all) const;

    // Invoke of the command with this offset; E_FAIL when there is none.
    HRESULT pick(std::uint32_t offset);

    // GetToolTip; `text` is empty on failure.
    HRESULT helpText(std::uint32_t offset, std::u16string& text);

  private:
    MenuEntry read(ComPointer<IExplorerCommand> command);
    std::vector<MenuEntry> readBelow(IExplorerCommand& command);
    int bitmapOf(IExplorerCommand& command) const;
    IExplorerCommand* find(std::uint32_t offset) const;

    Client& client_;
    IShellItemArray* items_ = nullptr;  // the client's
    MenuEntry root_;
    std::vector<std::pair<std::uint32_t, ComPointer<IExplorerCommand>>> commands_;  // by offset
};

}  // namespace rightclick
