// Starts the application with a request on its command line.
#pragma once

#include <cstdint>
#include <string>

#include "contextmenu/launch_request.h"

namespace nmshell {

inline constexpr std::u16string_view kApplication = u"nmark.exe";

class ApplicationLauncher {
  public:
    // `handoverCounter` numbers the hand-over files of the process; it must outlive the launcher.
    explicit ApplicationLauncher(std::uint32_t& handoverCounter) : handoverCounter_(handoverCounter) {}

    // The extension of hand-over files, with its point; ".tmp" until it is set.
    void setTempExtension(std::u16string extension) { tempExtension_ = std::move(extension); }

    // The folder of the application, with a trailing separator. When none is set, the application folder of
    // the library is used.
    void setModuleFolder(std::u16string folder) { moduleFolder_ = std::move(folder); }

    // Starts `executable` from the module folder, with administrator rights when `elevate` is set, and does
    // not wait for it; starts nothing when no folder is known. `owner` is the window that owns dialogs of the
    // system (HWND). True when the system started it. ShellExecuteW with the verb "open" or "runas".
    bool launch(void* owner, std::u16string_view executable, std::uint32_t command, bool elevate,
                const LaunchRequest& request);

    // The parameters for `command` and `request`, without the executable. Data of more than kMaxInlineData
    // code units is written to a hand-over file; when that fails the parameters carry no data.
    std::u16string buildArguments(std::uint32_t command, const LaunchRequest& request);

    // The next hand-over file's full name.
    std::u16string makeHandoverFileName();

  private:
    std::uint32_t& handoverCounter_;
    std::u16string tempExtension_ = u".tmp";
    std::u16string moduleFolder_;
};

}  // namespace nmshell
