#include "platform/shell.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <new>

#include "platform/host/fault.h"
#include "platform/host/process_host.h"
#include "platform/host/shell_host.h"
#include "platform/host/utf8.h"

namespace platform {
namespace {

constexpr std::int64_t kFileNotFound = 2;
constexpr std::int64_t kNotEnoughMemory = 8;

struct Shell {
    std::vector<host::ShellStart> starts;
    std::int64_t executeResult = 42;
    std::optional<std::uint32_t> exitCode = 0;
    bool forReal = false;
    int associationChanges = 0;
    std::map<int, std::u16string> folders;
    std::map<std::u16string, host::RecycleBin> bins;
    std::optional<std::u16string> windowsFolder = u"C:\\Windows";
};

Shell& shell() {
    static Shell instance;
    return instance;
}

template <class Map, class Value>
void setOrErase(Map& map, const typename Map::key_type& key, std::optional<Value> value) {
    map.erase(key);
    if (value)
        map.emplace(key, *std::move(value));
}

std::vector<std::u16string> splitAtBlanks(const std::u16string& parameters) {
    std::vector<std::u16string> items;
    for (std::size_t at = 0; (at = parameters.find_first_not_of(u' ', at)) != std::u16string::npos;) {
        const std::size_t end = std::min(parameters.find(u' ', at), parameters.size());
        items.push_back(parameters.substr(at, end - at));
        at = end;
    }
    return items;
}

// Records the start and, when asked to, carries it out; the value is that of ShellExecuteW.
std::int64_t start(host::ShellStart record, ProcessHandle& process) {
    const bool succeeds = shell().executeResult > kLargestShellFailure;
    // Whatever needs memory comes before the record: what is recorded has happened.
    if (succeeds && !shell().forReal && shell().exitCode)
        process = host::finishedProcess(*shell().exitCode);
    {
        static std::mutex guard;
        const std::lock_guard lock(guard);
        shell().starts.push_back(record);
    }
    if (!succeeds || !shell().forReal)
        return shell().executeResult;
    process = host::startProgram(record.file, splitAtBlanks(record.parameters));
    return process ? shell().executeResult : kFileNotFound;
}

}  // namespace

std::int64_t shellExecute(WindowRef owner, const std::u16string& verb, const std::u16string& file,
                          const std::u16string& parameters, const char16_t* folder, std::int32_t show) {
    if (const Status error = fault::next("ShellExecuteW"); !error.succeeded())
        return std::min<std::int64_t>(error.code, kLargestShellFailure);
    try {
        ProcessHandle process;
        return start({false, verb, file, parameters, folder != nullptr, show, owner, 0}, process);
    } catch (const std::bad_alloc&) {
        return kNotEnoughMemory;
    }
}

Status shellExecuteEx(const ShellExecuteRequest& request, ProcessHandle& process) {
    process.reset();
    if (const Status error = fault::next("ShellExecuteExW"); !error.succeeded())
        return error;
    ProcessHandle started;
    const std::int64_t result = start(
        {true, request.verb, request.file, request.parameters, false, request.show, nullptr, request.mask},
        started);
    if (request.mask & kMaskNoCloseProcess)
        process = std::move(started);
    if (result > kLargestShellFailure)
        return kSuccess;
    return result != 0 ? Status{static_cast<std::uint32_t>(result)} : kErrorNotEnoughMemory;
}

std::optional<std::u16string> folderPath(int csidl) {
    if (fault::next("SHGetFolderPathW") != kSuccess)
        return std::nullopt;
    const auto found = shell().folders.find(csidl);
    return found != shell().folders.end() ? std::optional(found->second) : std::nullopt;
}

Status queryRecycleBin(const std::u16string& root, std::int64_t& bytes, std::int64_t& items) {
    if (const Status error = fault::next("SHQueryRecycleBinW"); !error.succeeded())
        return error;
    const auto found = shell().bins.find(root);
    if (found == shell().bins.end())
        return kErrorPathNotFound;
    bytes = found->second.bytes;
    items = found->second.items;
    return kSuccess;
}

int driveNumber(const std::u16string& path) {
    const std::size_t at = path.starts_with(u"\\\\?\\") ? 4 : 0;
    if (path.size() < at + 2 || path[at + 1] != u':')
        return -1;
    const int letter = path[at] | 0x20;
    return letter >= u'a' && letter <= u'z' && path[at] < 0x80 ? letter - u'a' : -1;
}

std::uint32_t windowsDirectory(char16_t* buffer, std::uint32_t size) {
    if (fault::next("GetWindowsDirectoryW") != kSuccess || !shell().windowsFolder)
        return 0;
    const std::u16string& folder = *shell().windowsFolder;
    const std::uint32_t length = static_cast<std::uint32_t>(folder.size());
    if (size <= length)
        return length + 1;
    folder.copy(buffer, length);
    buffer[length] = u'\0';
    return length;
}

namespace {

// What a memory handle of makeDropList() points to: a block of exactly its size, which a sanitizer watches.
struct DropMemory {
    std::unique_ptr<char[]> block;
    std::size_t size = 0;
};

// The ANSI code page of the host is UTF-8, of which one byte is no character.
constexpr char kUnreadable = '\xFF';

std::u16string fromAnsi(std::string_view path) {
    if (fault::next("MultiByteToWideChar") != kSuccess || path == std::string_view(&kUnreadable, 1))
        return {};
    return fromHostName(path);
}

std::string bytesOf(const host::DropItem& item, bool isWide) {
    if (!isWide)
        return (item.readable ? toHostName(item.path) : std::string(1, kUnreadable)) + '\0';
    return {reinterpret_cast<const char*>(item.path.c_str()), (item.path.size() + 1) * sizeof(char16_t)};
}

}  // namespace

DropList readDropList(void* global) {
    const bool fails = fault::next("GlobalLock") != kSuccess || fault::next("GlobalSize") != kSuccess;
    if (fails || global == nullptr)
        return {};
    const auto& memory = *static_cast<const DropMemory*>(global);
    return readDropBlock(memory.block.get(), memory.size, fromAnsi);
}

void notifyAssociationsChanged() {
    ++shell().associationChanges;
}

namespace host {

std::vector<ShellStart>& shellStarts() {
    return shell().starts;
}

void setShellExecuteResult(std::int64_t value) {
    shell().executeResult = value;
}

void setShellProcess(std::optional<std::uint32_t> exitCode) {
    shell().exitCode = exitCode;
}

void startShellProgramsForReal(bool really) {
    shell().forReal = really;
}

void setFolderPath(int csidl, std::optional<std::u16string> folder) {
    setOrErase(shell().folders, csidl, std::move(folder));
}

void setRecycleBin(const std::u16string& root, std::optional<RecycleBin> bin) {
    setOrErase(shell().bins, root, bin);
}

int associationChanges() {
    return shell().associationChanges;
}

void setWindowsDirectory(std::optional<std::u16string> folder) {
    shell().windowsFolder = std::move(folder);
}

void resetShell() {
    shell() = Shell();
}

void* makeDropList(const std::vector<DropItem>& items) {
    const bool isWide = std::ranges::all_of(items, &DropItem::readable);
    const std::uint32_t header[] = {20, 0, 0, 0, isWide ? 1u : 0u};
    std::string bytes(reinterpret_cast<const char*>(header), sizeof(header));
    for (const DropItem& item : items)
        bytes += bytesOf(item, isWide);
    bytes.append(isWide ? 2 : 1, '\0');
    auto block = std::make_unique<char[]>(bytes.size());
    bytes.copy(block.get(), bytes.size());
    return new DropMemory{std::move(block), bytes.size()};
}

void freeDropList(void* global) {
    delete static_cast<DropMemory*>(global);
}

}  // namespace host

}  // namespace platform
