// The one place that brings windows.h in for the implementations of this folder.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#ifndef _WIN32_WINNT
#define _WIN32_WINNT 0x0A00
#endif
#include <windows.h>

#include <string>
#include <string_view>

#include "platform/error.h"

namespace platform {

static_assert(kSuccess.code == ERROR_SUCCESS);
static_assert(kErrorFileNotFound.code == ERROR_FILE_NOT_FOUND);
static_assert(kErrorPathNotFound.code == ERROR_PATH_NOT_FOUND);
static_assert(kErrorAccessDenied.code == ERROR_ACCESS_DENIED);
static_assert(kErrorInvalidHandle.code == ERROR_INVALID_HANDLE);
static_assert(kErrorNotEnoughMemory.code == ERROR_NOT_ENOUGH_MEMORY);
static_assert(kErrorGeneralFailure.code == ERROR_GEN_FAILURE);
static_assert(kErrorFileExists.code == ERROR_FILE_EXISTS);
static_assert(kErrorInvalidParameter.code == ERROR_INVALID_PARAMETER);
static_assert(kErrorBrokenPipe.code == ERROR_BROKEN_PIPE);
static_assert(kErrorDiskFull.code == ERROR_DISK_FULL);
static_assert(kErrorInvalidName.code == ERROR_INVALID_NAME);
static_assert(kErrorBadPathName.code == ERROR_BAD_PATHNAME);
static_assert(kErrorMoreData.code == ERROR_MORE_DATA);
static_assert(kErrorNoMoreItems.code == ERROR_NO_MORE_ITEMS);
static_assert(kErrorKeyDeleted.code == ERROR_KEY_DELETED);
static_assert(kErrorNotAllAssigned.code == ERROR_NOT_ALL_ASSIGNED);
static_assert(kErrorNoSuchPrivilege.code == ERROR_NO_SUCH_PRIVILEGE);
static_assert(kErrorInvalidMenuHandle.code == ERROR_INVALID_MENU_HANDLE);

// Why the last call failed. Some calls fail without a code; that is no success.
inline Status lastError() {
    const Status error{GetLastError()};
    return error.succeeded() ? kErrorGeneralFailure : error;
}

inline Status outcome(BOOL succeeded) {
    return succeeded ? kSuccess : lastError();
}

// wchar_t and char16_t are both one UTF-16 code unit here; only the type's name differs.
static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t* wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* wide(char16_t* text) {
    return reinterpret_cast<wchar_t*>(text);
}
inline const wchar_t* wide(const std::u16string& text) {
    return wide(text.c_str());
}

}  // namespace platform
