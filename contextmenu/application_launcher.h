// Starts the application with a request on its command line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "contextmenu/launch_request.h"
#include "platform/shell.h"

namespace nmshell {

inline constexpr std::u16string_view kApplication = u"nmark.exe";

class ApplicationLauncher {
  public:
    // `handover` takes data that is too long for the command line; it must outlive the launcher.
    explicit ApplicationLauncher(Handover& handover) : handover_(handover) {}

    // The folder of the application, with a trailing separator. When none is set, the application folder of
    // the library is used.
    void setModuleFolder(std::u16string folder) { moduleFolder_ = std::move(folder); }

    // Starts `executable` from the module folder, with administrator rights when `elevate` is set, and does
    // not wait for it; starts nothing when no folder is known. `owner` is the window that owns dialogs of the
    // system (HWND). True when the system started it. ShellExecuteW with the verb "open" or "runas".
    [[nodiscard]] bool launch(platform::WindowRef owner, std::u16string_view executable,
                              std::uint32_t command, bool elevate, const LaunchRequest& request);

  private:
    Handover& handover_;
    std::u16string moduleFolder_;
};

}  // namespace nmshell
