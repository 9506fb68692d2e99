#include "foundation/process/shell_run.h"
#include "platform/process.h"
#include "platform/shell.h"

namespace owlkit {

std::int32_t runShell(const std::u16string& file, const std::u16string& parameters, bool wait) {
    if (file.empty())
        return -1;
    constexpr std::uint32_t kMask = platform::kMaskNoUi | platform::kMaskNoAsync;
    const std::uint32_t mask = wait ? kMask | platform::kMaskNoCloseProcess : kMask;
    platform::ProcessHandle process;
    if (!platform::shellExecuteEx({u"open", file, parameters, mask, platform::kShowNormal}, process)
             .succeeded())
        return -1;
    if (process && wait) {
        // Whether the wait succeeded shows in the exit code.
        static_cast<void>(platform::waitForProcess(process, platform::kWaitForever));
        if (std::uint32_t code = 0; platform::exitCodeProcess(process, code).succeeded())
            return static_cast<std::int32_t>(code);
    }
    return 0;
}

}  // namespace owlkit
