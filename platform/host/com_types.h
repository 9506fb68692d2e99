// The host's declarations of the types and results in which COM interfaces speak: part of com_api.h, under
// the same rules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#define STDMETHODCALLTYPE
#define WINAPI
#define STDAPI extern "C" HRESULT

using HRESULT = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using UINT = std::uint32_t;
using BOOL = int;
using WORD = std::uint16_t;
using CHAR = char;
using LPCSTR = const char*;
using UINT_PTR = std::uintptr_t;
using LPVOID = void*;
using HGLOBAL = void*;
using CLIPFORMAT = std::uint16_t;

// NOLINTBEGIN(readability-identifier-naming): every name is the SDK's
struct HWND__;
struct HMENU__;
struct HKEY__;
struct HINSTANCE__;
struct ITEMIDLIST;
using HWND = HWND__*;
using HMENU = HMENU__*;
using HKEY = HKEY__*;
using HINSTANCE = HINSTANCE__*;
using PCIDLIST_ABSOLUTE = const ITEMIDLIST*;

struct POINT {
    LONG x;
    LONG y;
};

inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(const GUID& a, const GUID& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
inline bool IsEqualIID(REFIID a, REFIID b) {
    return a == b;
}
inline bool IsEqualCLSID(REFCLSID a, REFCLSID b) {
    return a == b;
}

inline constexpr HRESULT failure(std::uint32_t code) {
    return static_cast<HRESULT>(code);
}
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_PENDING = failure(0x8000000Au);
inline constexpr HRESULT E_NOTIMPL = failure(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = failure(0x80004002u);
inline constexpr HRESULT E_POINTER = failure(0x80004003u);
inline constexpr HRESULT E_FAIL = failure(0x80004005u);
inline constexpr HRESULT E_OUTOFMEMORY = failure(0x8007000Eu);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = failure(0x80040110u);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = failure(0x80040111u);
inline constexpr HRESULT DV_E_FORMATETC = failure(0x80040064u);
inline constexpr std::uint32_t SEVERITY_SUCCESS = 0;
inline constexpr HRESULT MAKE_HRESULT(std::uint32_t severity, std::uint32_t facility, std::uint32_t code) {
    return failure(severity << 31 | facility << 16 | code);
}
inline constexpr bool SUCCEEDED(HRESULT result) {
    return result >= 0;
}
inline constexpr bool FAILED(HRESULT result) {
    return result < 0;
}
// NOLINTEND(readability-identifier-naming)
