#include "testing/module_faults_win32.h"

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

#define CALL(name, failure) \
    FailingCall(#name, [](HMODULE module) { makeFailing<#name>(module, &name, failure); })
constexpr FailingCall kCalls[] = {
    CALL(malloc, nullptr),
    CALL(calloc, nullptr),
    CALL(RegOpenKeyExW, ERROR_ACCESS_DENIED),
    CALL(RegQueryValueExW, ERROR_ACCESS_DENIED),
    CALL(GetModuleFileNameW, 0U),
    CALL(GetLocaleInfoW, 0),
    CALL(FindFirstFileW, INVALID_HANDLE_VALUE),
    CALL(FindNextFileW, FALSE),
    CALL(CreateFileW, INVALID_HANDLE_VALUE),
    CALL(GetFileSizeEx, FALSE),
    CALL(ReadFile, FALSE),
    CALL(WriteFile, FALSE),
    CALL(DeleteFileW, FALSE),
    CALL(DeviceIoControl, FALSE),
    CALL(GetFileAttributesW, INVALID_FILE_ATTRIBUTES),
    CALL(GetFullPathNameW, 0U),
    CALL(GetTempPathW, 0U),
    CALL(GetWindowsDirectoryW, 0U),
    CALL(GlobalLock, nullptr),
    CALL(GlobalSize, 0U),
    CALL(OpenProcessToken, FALSE),
    CALL(GetTokenInformation, FALSE),
    CALL(SHQueryRecycleBinW, E_FAIL),
    CALL(ShellExecuteW, nullptr),
    CALL(ShellExecuteExW, FALSE),
    CALL(CreateMenu, nullptr),
    CALL(InsertMenuItemW, FALSE),
    CALL(LoadImageW, nullptr),
    CALL(GetCursorPos, FALSE),
};
// For threads that get no place; never walked.
constexpr FailingCall kSlots[] = {
    CALL(FlsAlloc, FLS_OUT_OF_INDEXES),
    CALL(FlsSetValue, FALSE),
};
#undef CALL

}  // namespace

const std::span<const FailingCall> failingCalls = kCalls;

void observe(HMODULE module) {
    freeBlock = reinterpret_cast<void (*)(void*)>(lead(module, "free", reinterpret_cast<void*>(&countFreed)));
    lead(module, "RaiseException", reinterpret_cast<void*>(&countThrown));
    lead(module, "ShellExecuteW", reinterpret_cast<void*>(&countLaunch));
    lead(module, "ShellExecuteExW", reinterpret_cast<void*>(&countOpened));
    lead(module, "SHQueryRecycleBinW", reinterpret_cast<void*>(&answerBin));
}

void makeCallsFailing(HMODULE module) {
    for (const FailingCall& call : kCalls)
        call.lead(module);
    for (const FailingCall& call : kSlots)
        call.lead(module);
}

}  // namespace dll_tests
