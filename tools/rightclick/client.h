// What differs between the two sides: on Windows the extension is a DLL, the selection comes from the shell
// and the menu is a real one; on the host the extension is linked in and runs over the stand-ins for the
// platform.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contextmenu/selection.h"
#include "platform/com.h"
#include "platform/menu.h"
#include "tools/rightclick/menu_entry.h"

namespace rightclick {

struct Request {
    nmshell::SelectionKind kind = nmshell::SelectionKind::Files;
    std::vector<std::u16string> paths;  // as they were named; none for the Recycle Bin
    std::u16string dll;                 // empty: the registered class
    bool shellEntries = true;
    std::uint32_t flags = CMF_NORMAL;
};

// A program or page that was started, where this side can tell.
struct Start {
    std::u16string verb;
    std::u16string file;
    std::u16string parameters;
};

// Everything that it hands out stays its own and lives as long as it does. Every failure is thrown as a
// Failure.
class Client {
  public:
    Client();
    ~Client();

    // Adds the options that only this side has.
    void addOptions(CLI::App& app);

    // Takes the request over and finds the selected objects.
    void select(const Request& request);

    // The full paths of the selection.
    const std::vector<std::u16string>& paths() const;

    // A new object of a class of the extension, with one reference that becomes the caller's. The first one
    // decides which module is meant below.
    HRESULT createObject(REFCLSID classId, REFIID iid, void** object);
    // Whether that goes by what is registered.
    bool usesRegistration() const;
    // The full path of the module that the object came from.
    std::u16string modulePath() const;

    // The selection as the extension gets it, or nullptr; and where it comes from: "shell", "client" or
    // "none".
    IDataObject* dataObject();
    const char* dataObjectSource() const;

    // The selection as the commands of the first level get it.
    IShellItemArray* itemArray();

    // The menu, which holds the shell's own entries if they were asked for and there are any; new entries go
    // to its end, which is `position`.
    platform::MenuRef openMenu(std::uint32_t& position);

    // The entries of the menu from `position` on.
    std::vector<MenuEntry> readMenu(std::uint32_t position);

    // Runs `command`, which invokes a command of the extension, and reports what it started. On the host it
    // also waits for started programs. With `silent` they must not write to our standard output.
    std::vector<Start> run(const std::function<void()>& command, bool silent);

    // Shows the menu, opens the submenu at `submenu` (none if negative), and writes a picture of it to `file`
    // (PNG).
    void takePicture(const std::u16string& file, int submenu);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace rightclick
