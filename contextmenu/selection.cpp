#include "contextmenu/selection.h"

#include "platform/file.h"
#include "platform/shell.h"

namespace nmshell {
namespace {

// Characters set aside for each path before the real lengths are known.
constexpr std::size_t kExpectedPathLength = 50;

constexpr std::uint32_t kWindowsDirectoryBuffer = 256;

// The storage medium that a data object handed out; released on every way out.
class Medium {
  public:
    Medium() = default;
    Medium(const Medium&) = delete;
    Medium& operator=(const Medium&) = delete;
    ~Medium() {
        if (held_)
            ReleaseStgMedium(&medium_);
    }

    bool getDropList(IDataObject& data) {
        FORMATETC format = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        held_ = SUCCEEDED(data.GetData(&format, &medium_));
        return held_ && medium_.tymed == TYMED_HGLOBAL;
    }

    HGLOBAL global() const { return medium_.hGlobal; }

  private:
    STGMEDIUM medium_ = {};
    bool held_ = false;
};

std::u16string readPaths(platform::DropList& list, std::uint32_t count) {
    std::u16string paths(kExpectedPathLength * count, u'\0');
    std::size_t offset = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t room = list.itemLength(i) + 1;
        if (offset + room > paths.size())
            paths.resize(offset + room);
        // Deliberate: an item that cannot be read is left out of the list but stays counted; what is offered
        // for the selection goes by the count.
        if (list.copyItem(i, paths.data() + offset, room) != 0)
            offset += room;
    }
    paths.resize(offset);
    return paths;
}

}  // namespace

std::uint32_t CollectDroppedPaths(IDataObject* data, std::u16string& paths) {
    paths.clear();
    Medium medium;
    if (!data || !medium.getDropList(*data))
        return 0;
    platform::DropList list = platform::DropList::open(medium.global());
    const std::uint32_t count = list.count();
    paths = readPaths(list, count);
    return count;
}

std::u16string firstPath(std::u16string_view paths) {
    return std::u16string(paths.substr(0, paths.find(u'\0')));
}

PathType pathType(const std::u16string& path) {
    const std::uint32_t attributes = platform::fileAttributes(path);
    if (attributes == platform::kInvalidFileAttributes)
        return PathType::Unreadable;
    return attributes & platform::kFileAttributeDirectory ? PathType::Folder : PathType::File;
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
    // Deliberate: without a drive it counts as the system drive, so that it is never offered for wiping a
    // whole drive.
    const int drive = platform::driveNumber(path);
    return drive < 0 || drive == number();
}

}  // namespace nmshell
