#include "platform/shell.h"

#include "platform/win32/win32_api.h"

#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <climits>
#include <cstddef>
#include <type_traits>

namespace platform {

static_assert(kShowNormal == SW_SHOWNORMAL);
static_assert(kMaskNoCloseProcess == SEE_MASK_NOCLOSEPROCESS);
static_assert(kMaskNoAsync == SEE_MASK_NOASYNC);
static_assert(kMaskNoUi == SEE_MASK_FLAG_NO_UI);
static_assert(kCsidlAppData == CSIDL_APPDATA);
static_assert(kCsidlLocalAppData == CSIDL_LOCAL_APPDATA);
static_assert(kCsidlCommonAppData == CSIDL_COMMON_APPDATA);
static_assert(std::is_same_v<WindowRef, HWND>);
// The header of the block that platform/drop_block.h reads.
static_assert(sizeof(DROPFILES) == 20);
static_assert(offsetof(DROPFILES, pFiles) == 0);
static_assert(offsetof(DROPFILES, fWide) == 16);

std::int64_t shellExecute(WindowRef owner, const std::u16string& verb, const std::u16string& file,
                          const std::u16string& parameters, const char16_t* folder, std::int32_t show) {
    return reinterpret_cast<INT_PTR>(
        ShellExecuteW(owner, wide(verb), wide(file), wide(parameters), wide(folder), show));
}

Status shellExecuteEx(const ShellExecuteRequest& request, ProcessHandle& process) {
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = request.mask;
    info.lpVerb = wide(request.verb);
    info.lpFile = wide(request.file);
    info.lpParameters = request.parameters.empty() ? nullptr : wide(request.parameters);
    info.nShow = request.show;
    const Status status = outcome(ShellExecuteExW(&info));
    process.reset(info.hProcess);
    return status;
}

std::optional<std::u16string> folderPath(int csidl) {
    char16_t path[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, wide(path))))
        return std::nullopt;
    return std::u16string(path);
}

Status queryRecycleBin(const std::u16string& root, std::int64_t& bytes, std::int64_t& items) {
    SHQUERYRBINFO info = {};
    static_assert(sizeof(info) == 24);
    info.cbSize = sizeof(info);
    const HRESULT result = SHQueryRecycleBinW(root.empty() ? nullptr : wide(root), &info);
    if (FAILED(result))
        return Status{static_cast<std::uint32_t>(result)};
    bytes = info.i64Size;
    items = info.i64NumItems;
    return kSuccess;
}

int driveNumber(const std::u16string& path) {
    return PathGetDriveNumberW(wide(path));
}

std::uint32_t windowsDirectory(char16_t* buffer, std::uint32_t size) {
    return GetWindowsDirectoryW(wide(buffer), size);
}

namespace {

// Memory that is locked for as long as this lives.
class LockedMemory {
  public:
    explicit LockedMemory(void* handle)
        : handle_(handle), bytes_(handle != nullptr ? GlobalLock(handle) : nullptr) {}
    ~LockedMemory() {
        if (bytes_ != nullptr)
            GlobalUnlock(handle_);
    }
    LockedMemory(const LockedMemory&) = delete;
    LockedMemory& operator=(const LockedMemory&) = delete;

    const void* bytes() const { return bytes_; }
    std::size_t size() const { return bytes_ != nullptr ? GlobalSize(handle_) : 0; }

  private:
    void* handle_;
    const void* bytes_;
};

std::u16string fromAnsi(std::string_view path) {
    if (path.size() > INT_MAX)
        return {};
    // A path in the ANSI code page has at least as many bytes as characters.
    std::u16string text(path.size(), u'\0');
    const int length = static_cast<int>(path.size());
    text.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, 0, path.data(), length, wide(text.data()), length)));
    return text;
}

}  // namespace

DropList readDropList(void* global) {
    const LockedMemory memory(global);
    return readDropBlock(memory.bytes(), memory.size(), fromAnsi);
}

}  // namespace platform
