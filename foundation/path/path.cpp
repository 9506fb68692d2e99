#include "foundation/path/path.h"

#include "platform/file.h"

namespace owlkit {

std::u16string folderOf(std::u16string_view path) {
    constexpr char16_t kSeparators[] = {u'/', platform::kPathSeparator, u'\0'};
    return std::u16string(path.substr(0, path.find_last_of(kSeparators) + 1));
}

std::u16string withTrailingSeparator(std::u16string folder) {
    constexpr bool kSlashCountsToo = platform::kPathSeparator == u'\\';
    const bool ends =
        folder.ends_with(platform::kPathSeparator) || (kSlashCountsToo && folder.ends_with(u'/'));
    if (!folder.empty() && !ends)
        folder += platform::kPathSeparator;
    return folder;
}

PathType pathType(const std::u16string& path) {
    const std::uint32_t attributes = platform::fileAttributes(path);
    if (attributes == platform::kInvalidFileAttributes)
        return PathType::Unreadable;
    return (attributes & platform::kFileAttributeDirectory) != 0 ? PathType::Folder : PathType::File;
}

}  // namespace owlkit
