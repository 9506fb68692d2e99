#include "foundation/process/folders.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

#include "foundation/path/path.h"
#include "platform/file.h"
#include "platform/module.h"
#include "platform/process.h"
#include "platform/shell.h"

namespace owlkit {
namespace {

constexpr std::size_t kPathBufferSize = 520;  // characters

// None, or one that is not empty. Without a destructor: a DLL that records its folder forgets it when it is
// unloaded, and at the end of the process nothing is freed.
constinit std::u16string* recordedFolder = nullptr;

std::u16string applicationFolder() {
    if (recordedFolder != nullptr)
        return *recordedFolder;
    return folderOf(platform::moduleFileName(nullptr));
}

std::optional<std::u16string> findFolder(FolderCode code) {
    switch (code) {
        case FolderCode::Current:
            if (auto current = platform::currentDirectory(kPathBufferSize))
                return current;
            return applicationFolder();
        case FolderCode::Application:
            return applicationFolder();
        case FolderCode::Temporary:
        case FolderCode::TemporaryFiles:
            return platform::tempPath(kPathBufferSize);
        case FolderCode::UserProfile:
            return platform::environmentVariable(u"USERPROFILE");
        case FolderCode::RoamingData:
        case FolderCode::RoamingSettings:
            return platform::folderPath(platform::kCsidlAppData);
        case FolderCode::LocalData:
            return platform::folderPath(platform::kCsidlLocalAppData);
        case FolderCode::CommonData:
        case FolderCode::CommonSettings:
            return platform::folderPath(platform::kCsidlCommonAppData);
    }
    return std::nullopt;
}

}  // namespace

bool getFolder(FolderCode code, std::u16string& folder) {
    folder.clear();
    const std::optional<std::u16string> found = findFolder(code);
    if (!found || pathType(*found) != PathType::Folder)
        return false;
    folder = withTrailingSeparator(*found);
    return true;
}

void recordApplicationFolder(const std::u16string& folder) {
    auto recorded = folder.empty() ? nullptr : std::make_unique<std::u16string>(folder);
    delete std::exchange(recordedFolder, recorded.release());
}

}  // namespace owlkit
