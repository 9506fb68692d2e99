#include "contextmenu/application_launcher.h"

#include "foundation/process/folders.h"
#include "platform/shell.h"

namespace nmshell {

bool ApplicationLauncher::launch(platform::WindowRef owner, std::u16string_view executable,
                                 std::uint32_t command, bool elevate, const LaunchRequest& request) {
    if (moduleFolder_.empty() && !owlkit::getFolder(owlkit::FolderCode::Application, moduleFolder_))
        return false;  // a bare name is looked for in places that anybody can write to
    std::u16string file = moduleFolder_;
    file += executable;
    const std::u16string verb = elevate ? u"runas" : u"open";
    // May write a file: so it comes last.
    const std::u16string parameters = buildArguments(command, request, handover_);
    return platform::shellExecute(owner, verb, file, parameters, nullptr, platform::kShowNormal) >
           platform::kLargestShellFailure;
}

}  // namespace nmshell
