#include "platform/shell.h"

#include "platform/drop_block.h"
#include "platform/win32/win32_api.h"

#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <climits>
#include <cstring>
#include <vector>

namespace platform {

std::int64_t shellExecute(void* owner, const std::u16string& verb, const std::u16string& file,
                          const std::u16string& parameters, const char16_t* folder, std::int32_t show) {
    return reinterpret_cast<INT_PTR>(ShellExecuteW(static_cast<HWND>(owner), wide(verb), wide(file),
                                                   wide(parameters), wide(folder), show));
}

bool shellExecuteEx(const ShellExecuteRequest& request, ProcessHandle& process) {
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = request.mask;
    info.lpVerb = wide(request.verb);
    info.lpFile = wide(request.file);
    info.lpParameters = request.parameters.empty() ? nullptr : wide(request.parameters);
    info.nShow = request.show;
    const BOOL done = ShellExecuteExW(&info);
    process.reset(info.hProcess);
    return done != FALSE;
}

std::optional<std::u16string> folderPath(int csidl) {
    char16_t path[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, wide(path))))
        return std::nullopt;
    return std::u16string(path);
}

bool queryRecycleBin(const std::u16string& root, std::int64_t& bytes, std::int64_t& items) {
    SHQUERYRBINFO info = {};
    static_assert(sizeof(info) == 24);
    info.cbSize = sizeof(info);
    if (FAILED(SHQueryRecycleBinW(root.empty() ? nullptr : wide(root), &info)))
        return false;
    bytes = info.i64Size;
    items = info.i64NumItems;
    return true;
}

int driveNumber(const std::u16string& path) {
    return PathGetDriveNumberW(wide(path));
}

std::uint32_t windowsDirectory(char16_t* buffer, std::uint32_t size) {
    return GetWindowsDirectoryW(wide(buffer), size);
}

// The locked memory and where its items are.
struct DropList::Block {
    explicit Block(void* global) : handle(global) {
        bytes = handle != nullptr ? GlobalLock(handle) : nullptr;
    }
    ~Block() {
        if (bytes != nullptr)
            GlobalUnlock(handle);
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    void findItems() {
        paths = findDropPaths(bytes, bytes != nullptr ? GlobalSize(handle) : 0);
        items = splitDropPaths(paths);
    }

    std::u16string text(std::uint32_t index) const {
        if (index >= items.size() || items[index].size() > INT_MAX)
            return {};
        const std::string_view item = items[index];
        std::u16string path(paths.isWide ? item.size() / sizeof(char16_t) : item.size(), u'\0');
        if (paths.isWide) {
            std::memcpy(path.data(), item.data(), item.size());
        } else {
            // A path in the ANSI code page has at least as many bytes as characters.
            const int length = static_cast<int>(item.size());
            path.resize(static_cast<std::size_t>(
                MultiByteToWideChar(CP_ACP, 0, item.data(), length, wide(path.data()), length)));
        }
        return path;
    }

    void* handle;
    const void* bytes;
    DropPaths paths;
    std::vector<std::string_view> items;
};

DropList::DropList(std::unique_ptr<Block> block) noexcept : block_(std::move(block)) {}

DropList::DropList(DropList&& other) noexcept = default;
DropList& DropList::operator=(DropList&& other) noexcept = default;
DropList::~DropList() = default;

DropList DropList::open(void* global) {
    auto block = std::make_unique<Block>(global);
    block->findItems();
    return DropList(std::move(block));
}

std::uint32_t DropList::count() const {
    return block_ ? block_->paths.count : 0;
}

std::uint32_t DropList::itemLength(std::uint32_t index) const {
    if (block_ && block_->paths.isWide && index < block_->items.size())
        return static_cast<std::uint32_t>(block_->items[index].size() / sizeof(char16_t));
    return block_ ? static_cast<std::uint32_t>(block_->text(index).size()) : 0;
}

std::uint32_t DropList::copyItem(std::uint32_t index, char16_t* buffer, std::uint32_t room) const {
    if (!block_ || room == 0)
        return 0;
    const std::u16string path = block_->text(index);
    const std::size_t length = path.copy(buffer, room - 1);
    buffer[length] = u'\0';
    return static_cast<std::uint32_t>(length);
}

}  // namespace platform
