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

// Why the last call failed. Some calls fail without a code; that is no success.
inline ErrorCode lastError() {
    const DWORD error = GetLastError();
    return error != ERROR_SUCCESS ? error : ERROR_GEN_FAILURE;
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
