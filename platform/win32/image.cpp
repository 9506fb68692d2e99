#include "platform/image.h"

#include <vector>

#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kErrorModuleNotFound.code == ERROR_MOD_NOT_FOUND);
static_assert(kErrorBadExeFormat.code == ERROR_BAD_EXE_FORMAT);
static_assert(kErrorModuleInitFailed.code == ERROR_DLL_INIT_FAILED);

namespace {

bool isFullPath(const std::u16string& path) {
    const bool onDrive = path.size() > 3 && path[1] == u':' && (path[2] == u'\\' || path[2] == u'/');
    return onDrive || path.starts_with(u"\\\\");
}

}  // namespace

Status loadError(const std::u16string& file) {
    if (!isFullPath(file))
        return kErrorBadPathName;
    const HMODULE module =
        LoadLibraryExW(wide(file), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!module)
        return lastError();
    FreeLibrary(module);
    return kSuccess;
}

Status headerError(const std::u16string& file) {
    if (!isFullPath(file))
        return kErrorBadPathName;
    const HMODULE module = LoadLibraryExW(wide(file), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (!module)
        return lastError();
    // The lowest bits of the handle say how the file was mapped.
    const auto base = reinterpret_cast<std::uintptr_t>(module) & ~std::uintptr_t{3};
    const auto& start = *reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto& header =
        reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + static_cast<std::uintptr_t>(start.e_lfanew))
            ->FileHeader;
    const bool fits =
        header.Machine == IMAGE_FILE_MACHINE_AMD64 && (header.Characteristics & IMAGE_FILE_DLL) != 0;
    FreeLibrary(module);
    return fits ? kSuccess : kErrorBadExeFormat;
}

std::u16string fileVersion(const std::u16string& file) {
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeW(wide(file), &unused);
    std::vector<std::byte> block(size);
    void* data = nullptr;
    UINT length = 0;
    if (size == 0 || !GetFileVersionInfoW(wide(file), 0, size, block.data()) ||
        !VerQueryValueW(block.data(), L"\\", &data, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return {};
    const auto* version = static_cast<const VS_FIXEDFILEINFO*>(data);
    std::u16string text;
    for (const WORD number : {HIWORD(version->dwFileVersionMS), LOWORD(version->dwFileVersionMS),
                              HIWORD(version->dwFileVersionLS), LOWORD(version->dwFileVersionLS)}) {
        const std::string digits = std::to_string(number);
        text += text.empty() ? u"" : u".";
        text.append(digits.begin(), digits.end());
    }
    return text;
}

}  // namespace platform
