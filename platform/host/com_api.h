// The host's declarations of the COM interfaces that the extension implements or calls. Names, slot order,
// layouts and numbers are those of the SDK; only what the extension uses is here.
#pragma once

#include "platform/host/com_types.h"

// NOLINTBEGIN(readability-identifier-naming): every name is the SDK's
extern const IID IID_IUnknown;
extern const IID IID_IClassFactory;
extern const IID IID_IDataObject;
extern const IID IID_IShellExtInit;
extern const IID IID_IContextMenu;

struct IUnknown {
    virtual HRESULT QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

  protected:
    ~IUnknown() = default;
};

struct IClassFactory : IUnknown {
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** object) = 0;
    virtual HRESULT LockServer(BOOL lock) = 0;

  protected:
    ~IClassFactory() = default;
};

inline constexpr CLIPFORMAT CF_HDROP = 15;
inline constexpr DWORD DVASPECT_CONTENT = 1;
inline constexpr DWORD TYMED_HGLOBAL = 1;
inline constexpr DWORD TYMED_FILE = 2;

struct FORMATETC {
    CLIPFORMAT cfFormat;
    void* ptd;
    DWORD dwAspect;
    LONG lindex;
    DWORD tymed;
};

struct STGMEDIUM {
    DWORD tymed;
    union {
        HGLOBAL hGlobal;
        void* pstg;
    };
    IUnknown* pUnkForRelease;
};

// Gives the medium back to its owner, or frees its memory when it has no owner; the medium is then empty.
void ReleaseStgMedium(STGMEDIUM* medium);

struct IDataObject : IUnknown {
    virtual HRESULT GetData(FORMATETC* format, STGMEDIUM* medium) = 0;
    virtual HRESULT GetDataHere(FORMATETC* format, STGMEDIUM* medium) = 0;
    virtual HRESULT QueryGetData(FORMATETC* format) = 0;
    virtual HRESULT GetCanonicalFormatEtc(FORMATETC* in, FORMATETC* out) = 0;
    virtual HRESULT SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) = 0;
    virtual HRESULT EnumFormatEtc(DWORD direction, void** formats) = 0;
    virtual HRESULT DAdvise(FORMATETC* format, DWORD flags, void* sink, DWORD* connection) = 0;
    virtual HRESULT DUnadvise(DWORD connection) = 0;
    virtual HRESULT EnumDAdvise(void** advises) = 0;

  protected:
    ~IDataObject() = default;
};

struct IShellExtInit : IUnknown {
    virtual HRESULT Initialize(PCIDLIST_ABSOLUTE folder, IDataObject* data, HKEY progId) = 0;

  protected:
    ~IShellExtInit() = default;
};

inline constexpr UINT CMF_NORMAL = 0x0;
inline constexpr UINT CMF_DEFAULTONLY = 0x1;
inline constexpr UINT CMF_VERBSONLY = 0x2;
inline constexpr UINT CMF_EXPLORE = 0x4;
inline constexpr UINT CMF_NOVERBS = 0x8;

inline constexpr UINT GCS_VERBA = 0;
inline constexpr UINT GCS_HELPTEXTA = 1;
inline constexpr UINT GCS_VALIDATEA = 2;
inline constexpr UINT GCS_VERBW = 4;
inline constexpr UINT GCS_HELPTEXTW = 5;
inline constexpr UINT GCS_VALIDATEW = 6;

struct CMINVOKECOMMANDINFO {
    DWORD cbSize;
    DWORD fMask;
    HWND hwnd;
    LPCSTR lpVerb;
    LPCSTR lpParameters;
    LPCSTR lpDirectory;
    int nShow;
    DWORD dwHotKey;
    void* hIcon;
};

inline constexpr DWORD CMIC_MASK_UNICODE = 0x4000;

// The form with wide members behind the others, used when cbSize says so.
struct CMINVOKECOMMANDINFOEX {
    DWORD cbSize;
    DWORD fMask;
    HWND hwnd;
    LPCSTR lpVerb;
    LPCSTR lpParameters;
    LPCSTR lpDirectory;
    int nShow;
    DWORD dwHotKey;
    void* hIcon;
    LPCSTR lpTitle;
    const char16_t* lpVerbW;
    const char16_t* lpParametersW;
    const char16_t* lpDirectoryW;
    const char16_t* lpTitleW;
    POINT ptInvoke;
};

struct IContextMenu : IUnknown {
    virtual HRESULT QueryContextMenu(HMENU menu, UINT index, UINT idFirst, UINT idLast, UINT flags) = 0;
    virtual HRESULT InvokeCommand(CMINVOKECOMMANDINFO* info) = 0;
    virtual HRESULT GetCommandString(UINT_PTR id, UINT type, UINT* reserved, CHAR* name, UINT size) = 0;

  protected:
    ~IContextMenu() = default;
};

inline constexpr DWORD DLL_PROCESS_DETACH = 0;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;
inline constexpr DWORD DLL_THREAD_ATTACH = 2;
// NOLINTEND(readability-identifier-naming)
