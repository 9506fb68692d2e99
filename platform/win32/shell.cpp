#include "platform/shell.h"

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

void notifyAssociationsChanged() {
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}

// The locked memory and where its items are.
struct DropList::Block {
    struct Item {
        std::size_t start;   // in bytes from the block's start
        std::size_t length;  // in characters or, in a list of ANSI paths, in bytes
    };

    explicit Block(void* global) : handle(global) {
        bytes = static_cast<const char*>(handle != nullptr ? GlobalLock(handle) : nullptr);
        size = bytes != nullptr ? GlobalSize(handle) : 0;
    }
    ~Block() {
        if (bytes != nullptr)
            GlobalUnlock(handle);
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    // The unit at `offset`, a char16_t or a char; the offset need not be aligned.
    template <class Unit>
    Unit unit(std::size_t offset) const {
        Unit value;
        std::memcpy(&value, bytes + offset, sizeof(value));
        return value;
    }

    template <class Unit>
    void findItems(std::size_t offset) {
        while (size - offset >= sizeof(Unit) && unit<Unit>(offset) != Unit{}) {
            const std::size_t start = offset;
            while (size - offset >= sizeof(Unit) && unit<Unit>(offset) != Unit{})
                offset += sizeof(Unit);
            const bool terminated = size - offset >= sizeof(Unit);
            items.push_back({start, terminated ? (offset - start) / sizeof(Unit) : 0});
            offset += terminated ? sizeof(Unit) : 0;
            if (!terminated)
                return;
        }
    }

    void findItems() {
        DROPFILES header;
        if (size < sizeof(header))
            return;
        std::memcpy(&header, bytes, sizeof(header));
        isWide = header.fWide != FALSE;
        if (header.pFiles > size)
            return;
        if (isWide)
            findItems<char16_t>(header.pFiles);
        else
            findItems<char>(header.pFiles);
    }

    std::u16string text(std::uint32_t index) const {
        if (index >= items.size() || items[index].length > INT_MAX)
            return {};
        const Item& item = items[index];
        std::u16string path(item.length, u'\0');
        if (isWide) {
            std::memcpy(path.data(), bytes + item.start, item.length * sizeof(char16_t));
        } else {
            // A path in the ANSI code page has at least as many bytes as characters.
            const int length = static_cast<int>(item.length);
            path.resize(static_cast<std::size_t>(
                MultiByteToWideChar(CP_ACP, 0, bytes + item.start, length, wide(path.data()), length)));
        }
        return path;
    }

    void* handle;
    const char* bytes;
    std::size_t size;
    bool isWide = false;
    std::vector<Item> items;
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
    return block_ ? static_cast<std::uint32_t>(block_->items.size()) : 0;
}

std::uint32_t DropList::itemLength(std::uint32_t index) const {
    if (block_ && block_->isWide && index < block_->items.size())
        return static_cast<std::uint32_t>(block_->items[index].length);
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
