#include "tests/dll/faults.h"

#include <algorithm>
#include <cstdlib>

#include "platform/com.h"
#include "testing/imports_win32.h"

namespace dll_tests {

Faults faults;

namespace {

template <std::size_t Size>
struct Name {
    char text[Size];
    constexpr Name(const char (&name)[Size]) { std::copy_n(name, Size, text); }
};

// One function for each call.
template <Name kName, class Signature>
struct Failing;
template <Name kName, class Result, class... Arguments>
struct Failing<kName, Result(Arguments...)> {
    static inline Result (*original)(Arguments...);
    static inline Result failure;

    static Result call(Arguments... arguments) {
        if (!faults.next(kName.text))
            return original(arguments...);
        SetLastError(ERROR_ACCESS_DENIED);
        return failure;
    }
};

template <Name kName, class Signature, class Failure>
void makeFailing(HMODULE module, Signature*, Failure failure) {
    using Hook = Failing<kName, Signature>;
    Hook::failure = failure;
    Hook::original =
        reinterpret_cast<Signature*>(lead(module, kName.text, reinterpret_cast<void*>(&Hook::call)));
}

void WINAPI countThrown(DWORD code, DWORD flags, DWORD count, const ULONG_PTR* arguments) {
    ++faults.thrown;
    RaiseException(code, flags, count, arguments);
}

HINSTANCE WINAPI countLaunch(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR, INT) {
    ++faults.launches;
    faults.start.clear();
    for (const LPCWSTR part : {verb, file, parameters})
        (faults.start += part ? reinterpret_cast<const char16_t*>(part) : u"") += u'|';
    faults.start.pop_back();
    return reinterpret_cast<HINSTANCE>(33);
}

BOOL WINAPI countOpened(SHELLEXECUTEINFOW* info) {
    countLaunch(info->hwnd, info->lpVerb, info->lpFile, info->lpParameters, info->lpDirectory, info->nShow);
    return TRUE;
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
    lead(module, "ShellExecuteExW", reinterpret_cast<void*>(&countOpened));
    lead(module, "SHQueryRecycleBinW", reinterpret_cast<void*>(&answerBin));
}

void makeCallsFailing(HMODULE module) {
#define MAKE_FAILING(name, failure) makeFailing<#name>(module, &name, failure)
    MAKE_FAILING(FlsAlloc, FLS_OUT_OF_INDEXES);
    MAKE_FAILING(FlsSetValue, FALSE);
    MAKE_FAILING(malloc, nullptr);
    MAKE_FAILING(calloc, nullptr);
    MAKE_FAILING(RegOpenKeyExW, ERROR_ACCESS_DENIED);
    MAKE_FAILING(RegQueryValueExW, ERROR_ACCESS_DENIED);
    MAKE_FAILING(GetModuleFileNameW, 0U);
    MAKE_FAILING(GetLocaleInfoW, 0);
    MAKE_FAILING(FindFirstFileW, INVALID_HANDLE_VALUE);
    MAKE_FAILING(FindNextFileW, FALSE);
    MAKE_FAILING(CreateFileW, INVALID_HANDLE_VALUE);
    MAKE_FAILING(GetFileSizeEx, FALSE);
    MAKE_FAILING(ReadFile, FALSE);
    MAKE_FAILING(WriteFile, FALSE);
    MAKE_FAILING(DeleteFileW, FALSE);
    MAKE_FAILING(DeviceIoControl, FALSE);
    MAKE_FAILING(GetFileAttributesW, INVALID_FILE_ATTRIBUTES);
    MAKE_FAILING(GetFullPathNameW, 0U);
    MAKE_FAILING(GetTempPathW, 0U);
    MAKE_FAILING(GetWindowsDirectoryW, 0U);
    MAKE_FAILING(GlobalLock, nullptr);
    MAKE_FAILING(GlobalSize, 0U);
    MAKE_FAILING(OpenProcessToken, FALSE);
    MAKE_FAILING(GetTokenInformation, FALSE);
    MAKE_FAILING(SHQueryRecycleBinW, E_FAIL);
    MAKE_FAILING(ShellExecuteW, nullptr);
    MAKE_FAILING(ShellExecuteExW, FALSE);
    MAKE_FAILING(CreateMenu, nullptr);
    MAKE_FAILING(InsertMenuItemW, FALSE);
    MAKE_FAILING(LoadImageW, nullptr);
    MAKE_FAILING(GetCursorPos, FALSE);
#undef MAKE_FAILING
}

}  // namespace dll_tests
