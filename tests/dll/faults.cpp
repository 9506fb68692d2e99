#include "tests/dll/faults.h"

#include "platform/com.h"
#include "tests/dll/imports.h"

namespace dll_tests {

Faults faults;

namespace {

// One function for each signature; no two of the calls below have the same.
template <class Signature>
struct Failing;
template <class Result, class... Arguments>
struct Failing<Result(Arguments...)> {
    static inline const char* name;
    static inline Result (*original)(Arguments...);
    static inline Result failure;

    static Result call(Arguments... arguments) {
        if (!faults.next(name))
            return original(arguments...);
        SetLastError(ERROR_ACCESS_DENIED);
        return failure;
    }
};

template <class Signature, class Failure>
void makeFailing(HMODULE module, const char* name, Failure failure) {
    using Hook = Failing<Signature>;
    Hook::name = name;
    Hook::failure = failure;
    Hook::original = reinterpret_cast<Signature*>(lead(module, name, reinterpret_cast<void*>(&Hook::call)));
}

void WINAPI countThrown(DWORD code, DWORD flags, DWORD count, const ULONG_PTR* arguments) {
    ++faults.thrown;
    RaiseException(code, flags, count, arguments);
}

HINSTANCE WINAPI countLaunch(HWND, LPCWSTR, LPCWSTR, LPCWSTR parameters, LPCWSTR, INT) {
    ++faults.launches;
    faults.parameters = reinterpret_cast<const char16_t*>(parameters);
    return reinterpret_cast<HINSTANCE>(33);
}

// Wine loses memory at every question about a Recycle Bin.
HRESULT WINAPI answerBin(LPCWSTR, SHQUERYRBINFO* info) {
    info->i64NumItems = info->i64Size = 1;
    return S_OK;
}

void (*freeBlock)(void*);
void countFreed(void* block) {
    ++faults.freed;
    freeBlock(block);
}

}  // namespace

void observe(HMODULE module) {
    freeBlock = reinterpret_cast<void (*)(void*)>(lead(module, "free", reinterpret_cast<void*>(&countFreed)));
    lead(module, "RaiseException", reinterpret_cast<void*>(&countThrown));
    lead(module, "ShellExecuteW", reinterpret_cast<void*>(&countLaunch));
    lead(module, "SHQueryRecycleBinW", reinterpret_cast<void*>(&answerBin));
}

void makeCallsFailing(HMODULE module) {
    makeFailing<decltype(FlsAlloc)>(module, "FlsAlloc", FLS_OUT_OF_INDEXES);
    makeFailing<decltype(FlsSetValue)>(module, "FlsSetValue", FALSE);
    makeFailing<decltype(malloc)>(module, "malloc", nullptr);
    makeFailing<decltype(RegOpenKeyExW)>(module, "RegOpenKeyExW", ERROR_ACCESS_DENIED);
    makeFailing<decltype(RegQueryValueExW)>(module, "RegQueryValueExW", ERROR_ACCESS_DENIED);
    makeFailing<decltype(GetModuleFileNameW)>(module, "GetModuleFileNameW", 0U);
    makeFailing<decltype(FindFirstFileW)>(module, "FindFirstFileW", INVALID_HANDLE_VALUE);
    makeFailing<decltype(CreateFileW)>(module, "CreateFileW", INVALID_HANDLE_VALUE);
    makeFailing<decltype(ReadFile)>(module, "ReadFile", FALSE);
    makeFailing<decltype(GlobalLock)>(module, "GlobalLock", nullptr);
    makeFailing<decltype(SHQueryRecycleBinW)>(module, "SHQueryRecycleBinW", E_FAIL);
    makeFailing<decltype(CreateMenu)>(module, "CreateMenu", nullptr);
    makeFailing<decltype(InsertMenuItemW)>(module, "InsertMenuItemW", FALSE);
    makeFailing<decltype(LoadImageW)>(module, "LoadImageW", nullptr);
}

}  // namespace dll_tests
