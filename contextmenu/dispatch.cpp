#include "contextmenu/dispatch.h"

#include <algorithm>

#include "contextmenu/commands.h"
#include "foundation/process/shell_run.h"
#include "foundation/stream/file_stream.h"
#include "foundation/text/number.h"
#include "foundation/text/text.h"
#include "platform/menu.h"
#include "platform/shell.h"

namespace nmshell {
namespace {

constexpr std::u16string_view kVersion = u"" NMSHELL_VERSION;
constexpr std::u16string_view kWebHost = u"" NMSHELL_WEB_HOST;
constexpr std::u16string_view kVersionTag = u"%(VID)";
constexpr int kVersionComponents = 3;

constexpr owlkit::OpenMode kOpenVolume =
    owlkit::OpenMode::Read | owlkit::OpenMode::ShareReadWrite | owlkit::OpenMode::RawDevice;

bool needsElevation(const Command& row, const Selection& selection) {
    switch (row.elevation) {
        case Elevation::Always:
            return true;
        case Elevation::WhenVolumeIsClosed:
            return volumeIsClosed(selection.paths);
        case Elevation::Never:
            break;
    }
    return false;
}

}  // namespace

bool dispatch(std::uint32_t offset, platform::WindowRef owner, const Selection& selection,
              ApplicationLauncher& launcher) {
    if (offset >= kCommandCount)
        return false;
    const Command& row = command(offset);
    if (row.action == CommandAction::OpenPage) {
        static_cast<void>(owlkit::openWithShell(owlkit::OpenKind::FileOrUrl, pageAddress(row.page)));
        return true;
    }
    LaunchRequest request;
    request.command = row.number;
    request.cursorValid = platform::cursorPosition(request.cursor.x, request.cursor.y).succeeded();
    if (row.data == RequestData::PathList)
        request.data = selection.paths.text();
    static_cast<void>(
        launcher.launch(owner, kApplication, row.number, needsElevation(row, selection), request));
    return true;
}

bool volumeIsClosed(const owlkit::PathList& paths) {
    const int drive = platform::driveNumber(std::u16string(paths.first()));
    if (drive < 0)
        return true;
    std::u16string device = u"\\\\.\\";
    device += static_cast<char16_t>(u'A' + drive);
    device += u':';
    owlkit::FileStream volume;
    return !volume.open(device, kOpenVolume);
}

std::u16string pageAddress(std::u16string_view page) {
    std::u16string address(kWebHost);
    address += owlkit::replaceAll(std::u16string(page), kVersionTag, versionIdentifier(kVersion));
    return address;
}

std::u16string versionIdentifier(std::u16string_view version) {
    std::u16string identifier;
    for (int i = 0; i < kVersionComponents && !version.empty(); ++i) {
        const std::size_t end = std::min(version.find(u'.'), version.size());
        identifier += owlkit::formatNumber<char16_t>(owlkit::parseInt32Or(version.substr(0, end), 0));
        version.remove_prefix(std::min(end + 1, version.size()));
    }
    return identifier;
}

}  // namespace nmshell
