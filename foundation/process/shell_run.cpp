#include "foundation/process/shell_run.h"

#include <cstddef>
#include <string_view>

#include "foundation/path/path.h"
#include "foundation/text/text.h"
#include "platform/process.h"
#include "platform/shell.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kMask = platform::kMaskNoUi | platform::kMaskNoAsync;

bool open(const std::u16string& target) {
    platform::ProcessHandle process;
    return platform::shellExecuteEx({u"open", target, {}, kMask, platform::kShowNormal}, process).succeeded();
}

bool openFileOrUrl(const std::u16string& target) {
    if (target.find(u"://") != std::u16string::npos)
        return open(target);
    if (pathType(target) == PathType::Unreadable)
        return false;
    return open(u"file://" + std::u16string(trim(target)));
}

bool openMail(const std::u16string& target) {
    const std::size_t colon = target.find(u':');
    if (colon == std::u16string::npos || colon == 0)
        return open(u"mailto:" + std::u16string(trim(target)));
    const std::u16string scheme = toLowerAscii(trim(std::u16string_view(target).substr(0, colon)));
    return scheme == u"mailto" && open(target);
}

}  // namespace

bool openWithShell(OpenKind kind, const std::u16string& target) {
    if (target.empty())
        return false;
    switch (kind) {
        case OpenKind::FileOrUrl:
            return openFileOrUrl(target);
        case OpenKind::Mail:
            return openMail(target);
    }
    return open(target);
}

}  // namespace owlkit
