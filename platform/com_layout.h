// What the two sides of com.h must agree in. Included by the com.cpp of each side, so the host's declarations
// and the SDK's are held against the same numbers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/com.h"

namespace platform {

static_assert(sizeof(HRESULT) == 4);
static_assert(sizeof(ULONG) == 4);
static_assert(sizeof(DWORD) == 4);
static_assert(sizeof(LONG) == 4);
static_assert(sizeof(UINT) == 4);
static_assert(sizeof(BOOL) == 4);
static_assert(sizeof(WORD) == 2);
static_assert(sizeof(CHAR) == 1);
static_assert(sizeof(CLIPFORMAT) == 2);
static_assert(sizeof(UINT_PTR) == 8);
static_assert(sizeof(*LPWSTR{}) == 2);
static_assert(sizeof(SFGAOF) == 4);
static_assert(sizeof(SIGDN) == 4);
static_assert(sizeof(EXPCMDSTATE) == 4);
static_assert(sizeof(EXPCMDFLAGS) == 4);

static_assert(sizeof(POINT) == 8);
static_assert(offsetof(POINT, x) == 0);
static_assert(offsetof(POINT, y) == 4);

static_assert(sizeof(GUID) == 16);
static_assert(offsetof(GUID, Data1) == 0);
static_assert(offsetof(GUID, Data2) == 4);
static_assert(offsetof(GUID, Data3) == 6);
static_assert(offsetof(GUID, Data4) == 8);

static_assert(sizeof(FORMATETC) == 32);
static_assert(offsetof(FORMATETC, cfFormat) == 0);
static_assert(offsetof(FORMATETC, ptd) == 8);
static_assert(offsetof(FORMATETC, dwAspect) == 16);
static_assert(offsetof(FORMATETC, lindex) == 20);
static_assert(offsetof(FORMATETC, tymed) == 24);

static_assert(sizeof(STGMEDIUM) == 24);
static_assert(offsetof(STGMEDIUM, tymed) == 0);
static_assert(offsetof(STGMEDIUM, hGlobal) == 8);
static_assert(offsetof(STGMEDIUM, pstg) == 8);
static_assert(offsetof(STGMEDIUM, pUnkForRelease) == 16);

static_assert(sizeof(CMINVOKECOMMANDINFO) == 56);
static_assert(offsetof(CMINVOKECOMMANDINFO, cbSize) == 0);
static_assert(offsetof(CMINVOKECOMMANDINFO, fMask) == 4);
static_assert(offsetof(CMINVOKECOMMANDINFO, hwnd) == 8);
static_assert(offsetof(CMINVOKECOMMANDINFO, lpVerb) == 16);
static_assert(offsetof(CMINVOKECOMMANDINFO, lpParameters) == 24);
static_assert(offsetof(CMINVOKECOMMANDINFO, lpDirectory) == 32);
static_assert(offsetof(CMINVOKECOMMANDINFO, nShow) == 40);
static_assert(offsetof(CMINVOKECOMMANDINFO, dwHotKey) == 44);
static_assert(offsetof(CMINVOKECOMMANDINFO, hIcon) == 48);

static_assert(sizeof(CMINVOKECOMMANDINFOEX) == 104);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, cbSize) == 0);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, fMask) == 4);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, hwnd) == 8);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpVerb) == 16);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpParameters) == 24);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpDirectory) == 32);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, nShow) == 40);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, dwHotKey) == 44);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, hIcon) == 48);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpTitle) == 56);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpVerbW) == 64);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpParametersW) == 72);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpDirectoryW) == 80);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, lpTitleW) == 88);
static_assert(offsetof(CMINVOKECOMMANDINFOEX, ptInvoke) == 96);

static_assert(S_OK == 0);
static_assert(S_FALSE == 1);
static_assert(E_PENDING == static_cast<HRESULT>(0x8000000A));
static_assert(E_NOTIMPL == static_cast<HRESULT>(0x80004001));
static_assert(E_NOINTERFACE == static_cast<HRESULT>(0x80004002));
static_assert(E_POINTER == static_cast<HRESULT>(0x80004003));
static_assert(E_FAIL == static_cast<HRESULT>(0x80004005));
static_assert(E_OUTOFMEMORY == static_cast<HRESULT>(0x8007000E));
static_assert(CLASS_E_NOAGGREGATION == static_cast<HRESULT>(0x80040110));
static_assert(CLASS_E_CLASSNOTAVAILABLE == static_cast<HRESULT>(0x80040111));
static_assert(DV_E_FORMATETC == static_cast<HRESULT>(0x80040064));
static_assert(MAKE_HRESULT(SEVERITY_SUCCESS, 0, 14) == 14);
static_assert(MAKE_HRESULT(1, 7, 14) == E_OUTOFMEMORY);

static_assert(CF_HDROP == 15);
static_assert(DVASPECT_CONTENT == 1);
static_assert(TYMED_HGLOBAL == 1);
static_assert(TYMED_FILE == 2);
static_assert(CMF_NORMAL == 0);
static_assert(CMF_DEFAULTONLY == 1);
static_assert(CMF_VERBSONLY == 2);
static_assert(CMF_EXPLORE == 4);
static_assert(CMF_NOVERBS == 8);
static_assert(GCS_VERBA == 0);
static_assert(GCS_HELPTEXTA == 1);
static_assert(GCS_VALIDATEA == 2);
static_assert(GCS_VERBW == 4);
static_assert(GCS_HELPTEXTW == 5);
static_assert(GCS_VALIDATEW == 6);
static_assert(CMIC_MASK_UNICODE == 0x4000);
static_assert(static_cast<std::uint32_t>(SIGDN_FILESYSPATH) == 0x80058000);
static_assert(ECS_ENABLED == 0);
static_assert(ECS_DISABLED == 1);
static_assert(ECS_HIDDEN == 2);
static_assert(ECF_DEFAULT == 0);
static_assert(ECF_HASSUBCOMMANDS == 1);
static_assert(ECF_ISSEPARATOR == 8);
static_assert(DLL_PROCESS_DETACH == 0);
static_assert(DLL_PROCESS_ATTACH == 1);
static_assert(DLL_THREAD_ATTACH == 2);

}  // namespace platform
