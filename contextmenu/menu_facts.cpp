#include "contextmenu/menu_facts.h"

#include "platform/shell.h"

namespace nmshell {
namespace {

constexpr std::uint32_t kWindowsDirectoryBuffer = 256;

void gatherDriveFacts(const Selection& selection, SystemDrive& systemDrive, MenuFacts& facts) {
    const std::u16string first(selection.paths.first());
    facts.firstPathOnSystemDrive = systemDrive.holds(first);
    // A drive whose path could not be read must not be taken for all drives, which the empty root means.
    if (selection.count == 1 && !first.empty())
        facts.recycleBin = QueryRecycleBinState(first);
    facts.elevation = owlkit::cachedElevation();
}

}  // namespace

RecycleBinState QueryRecycleBinState(const std::u16string& root) {
    std::int64_t bytes = 0;
    std::int64_t items = 0;
    if (!platform::queryRecycleBin(root, bytes, items).succeeded())
        return RecycleBinState::Unknown;
    return items != 0 ? RecycleBinState::HoldsItems : RecycleBinState::Empty;
}

int SystemDrive::number() {
    if (number_ == kNotAsked) {
        std::u16string folder(kWindowsDirectoryBuffer, u'\0');
        const std::uint32_t length = platform::windowsDirectory(folder.data(), kWindowsDirectoryBuffer);
        const bool known = length != 0 && length < kWindowsDirectoryBuffer;
        folder.resize(known ? length : 0);
        number_ = known ? platform::driveNumber(folder) : -1;
    }
    return number_;
}

bool SystemDrive::holds(const std::u16string& path) {
    // Without a drive it counts as the system drive, so that it is never offered for wiping a whole drive.
    const int drive = platform::driveNumber(path);
    return drive < 0 || drive == number();
}

MenuFacts gatherFacts(const Selection& selection, SystemDrive& systemDrive) {
    MenuFacts facts;
    switch (selection.kind) {
        case SelectionKind::Files:
            if (selection.count == 1)
                facts.firstPathType = owlkit::pathType(std::u16string(selection.paths.first()));
            break;
        case SelectionKind::Drives:
            if (selection.count != 0)
                gatherDriveFacts(selection, systemDrive, facts);
            break;
        case SelectionKind::RecycleBin:
            facts.recycleBin = QueryRecycleBinState({});
            facts.elevation = owlkit::cachedElevation();
            break;
    }
    return facts;
}

}  // namespace nmshell
