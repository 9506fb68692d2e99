// The host's declarations of what a command of the first level of the menu implements and calls: part of
// com_api.h, under the same rules.
#pragma once

#include "platform/host/com_api.h"

// NOLINTBEGIN(readability-identifier-naming): every name is the SDK's

// LPWSTR: the caller frees what is handed out by CoTaskMemFree.
using LPWSTR = char16_t*;
using REFGUID = const GUID&;
using SFGAOF = ULONG;

struct IBindCtx;
struct IEnumShellItems;
struct PROPERTYKEY;

extern const IID IID_IExplorerCommand;
extern const IID IID_IEnumExplorerCommand;
extern const IID IID_IShellItem;
extern const IID IID_IShellItemArray;

// nullptr when there is no memory.
void* CoTaskMemAlloc(std::size_t bytes);
void CoTaskMemFree(void* memory);

enum SIGDN : int { SIGDN_FILESYSPATH = static_cast<int>(0x80058000u) };

struct IShellItem : IUnknown {
    virtual HRESULT BindToHandler(IBindCtx* context, REFGUID handler, REFIID iid, void** object) = 0;
    virtual HRESULT GetParent(IShellItem** parent) = 0;
    virtual HRESULT GetDisplayName(SIGDN kind, LPWSTR* name) = 0;
    virtual HRESULT GetAttributes(SFGAOF mask, SFGAOF* attributes) = 0;
    virtual HRESULT Compare(IShellItem* other, DWORD hint, int* order) = 0;

  protected:
    ~IShellItem() = default;
};

struct IShellItemArray : IUnknown {
    virtual HRESULT BindToHandler(IBindCtx* context, REFGUID handler, REFIID iid, void** object) = 0;
    virtual HRESULT GetPropertyStore(int flags, REFIID iid, void** store) = 0;
    virtual HRESULT GetPropertyDescriptionList(const PROPERTYKEY& key, REFIID iid, void** list) = 0;
    virtual HRESULT GetAttributes(int flags, SFGAOF mask, SFGAOF* attributes) = 0;
    virtual HRESULT GetCount(DWORD* count) = 0;
    virtual HRESULT GetItemAt(DWORD index, IShellItem** item) = 0;
    virtual HRESULT EnumItems(IEnumShellItems** items) = 0;

  protected:
    ~IShellItemArray() = default;
};

using EXPCMDSTATE = DWORD;
inline constexpr EXPCMDSTATE ECS_ENABLED = 0x0;
inline constexpr EXPCMDSTATE ECS_DISABLED = 0x1;
inline constexpr EXPCMDSTATE ECS_HIDDEN = 0x2;

using EXPCMDFLAGS = DWORD;
inline constexpr EXPCMDFLAGS ECF_DEFAULT = 0x0;
inline constexpr EXPCMDFLAGS ECF_HASSUBCOMMANDS = 0x1;
inline constexpr EXPCMDFLAGS ECF_ISSEPARATOR = 0x8;

struct IEnumExplorerCommand;

struct IExplorerCommand : IUnknown {
    virtual HRESULT GetTitle(IShellItemArray* items, LPWSTR* name) = 0;
    virtual HRESULT GetIcon(IShellItemArray* items, LPWSTR* icon) = 0;
    virtual HRESULT GetToolTip(IShellItemArray* items, LPWSTR* text) = 0;
    virtual HRESULT GetCanonicalName(GUID* name) = 0;
    virtual HRESULT GetState(IShellItemArray* items, BOOL okToBeSlow, EXPCMDSTATE* state) = 0;
    virtual HRESULT Invoke(IShellItemArray* items, IBindCtx* context) = 0;
    virtual HRESULT GetFlags(EXPCMDFLAGS* flags) = 0;
    virtual HRESULT EnumSubCommands(IEnumExplorerCommand** commands) = 0;

  protected:
    ~IExplorerCommand() = default;
};

struct IEnumExplorerCommand : IUnknown {
    virtual HRESULT Next(ULONG count, IExplorerCommand** commands, ULONG* fetched) = 0;
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(IEnumExplorerCommand** copy) = 0;

  protected:
    ~IEnumExplorerCommand() = default;
};

// NOLINTEND(readability-identifier-naming)
