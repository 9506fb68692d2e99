// What a loaded module imports, to be led elsewhere.
#pragma once

#include "platform/win32/win32_api.h"

#include <cstring>
#include <stdexcept>

namespace dll_tests {

inline const IMAGE_OPTIONAL_HEADER64& headersOf(HMODULE module) {
    auto* const image = reinterpret_cast<char*>(module);
    const auto* const dos = reinterpret_cast<IMAGE_DOS_HEADER*>(image);
    return reinterpret_cast<IMAGE_NT_HEADERS64*>(image + dos->e_lfanew)->OptionalHeader;
}

// Calls `visit(dll, name, slot)` for every import; `slot` is where the module keeps the address.
template <class Visit>
void forEachImport(HMODULE module, Visit visit) {
    auto* const image = reinterpret_cast<char*>(module);
    const auto& directory = headersOf(module).DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(image + directory.VirtualAddress);
    for (; from->Name != 0; ++from) {
        const auto* entry = reinterpret_cast<ULONG_PTR*>(image + from->OriginalFirstThunk);
        auto* slot = reinterpret_cast<void**>(image + from->FirstThunk);
        for (; *entry != 0; ++entry, ++slot)
            visit(image + from->Name, reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(image + *entry)->Name, slot);
    }
}

inline void setSlot(void** slot, void* address) {
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = address;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

// Leads an import to `function`; answers where it led before.
inline void* lead(HMODULE module, const char* name, void* function) {
    void* before = nullptr;
    forEachImport(module, [&](const char*, const char* import, void** slot) {
        if (std::strcmp(import, name) != 0)
            return;
        before = *slot;
        setSlot(slot, function);
    });
    if (before == nullptr)
        throw std::runtime_error(name);
    return before;
}

// Puts another function in the place of an imported one, for as long as it lives.
class Replaced {
  public:
    Replaced(void*& entry, void* function) : entry_(entry), original_(entry) { setSlot(&entry, function); }
    ~Replaced() { setSlot(&entry_, original_); }
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;

  private:
    void*& entry_;
    void* original_;
};

// A module that was put into memory without being entered: its imports can be led elsewhere before it is
// attached, and that can fail.
class UnenteredModule {
  public:
    explicit UnenteredModule(const wchar_t* name)
        : module_(LoadLibraryExW(name, nullptr, DONT_RESOLVE_DLL_REFERENCES)) {
        forEachImport(module_, [](const char* dll, const char* import, void** slot) {
            setSlot(slot, reinterpret_cast<void*>(GetProcAddress(LoadLibraryA(dll), import)));
        });
    }
    ~UnenteredModule() { FreeLibrary(module_); }
    UnenteredModule(const UnenteredModule&) = delete;
    UnenteredModule& operator=(const UnenteredModule&) = delete;

    HMODULE get() const { return module_; }

    bool enter(DWORD reason, void* reserved = nullptr) const {
        const auto entry = reinterpret_cast<BOOL(WINAPI*)(HMODULE, DWORD, void*)>(
            reinterpret_cast<char*>(module_) + headersOf(module_).AddressOfEntryPoint);
        return entry(module_, reason, reserved) != FALSE;
    }

    template <class Function>
    Function exported(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }

  private:
    HMODULE module_;
};

}  // namespace dll_tests
