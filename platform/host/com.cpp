#include "platform/com_layout.h"

#include <atomic>

#include "platform/host/com_host.h"
#include "platform/host/fault.h"

const IID IID_IUnknown = {0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_IClassFactory = {0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_IDataObject = {0x0000010E, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_IShellExtInit = {0x000214E8, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_IContextMenu = {0x000214E4, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

void ReleaseStgMedium(STGMEDIUM* medium) {
    ++std::atomic_ref(platform::host::releasedMedia());
    if (medium->pUnkForRelease)
        medium->pUnkForRelease->Release();
    *medium = STGMEDIUM{};
}

namespace platform::host {

std::uint32_t& releasedMedia() {
    static std::uint32_t count = 0;
    return count;
}

void resetCom() {
    releasedMedia() = 0;
}

DataObject::DataObject(HGLOBAL dropList, HRESULT result, DWORD tymed)
    : dropList_(dropList), result_(result), tymed_(tymed) {}

HRESULT DataObject::QueryInterface(REFIID iid, void** object) {
    const bool known = iid == IID_IUnknown || iid == IID_IDataObject;
    *object = known ? static_cast<IDataObject*>(this) : nullptr;
    if (known)
        AddRef();
    return known ? S_OK : E_NOINTERFACE;
}

ULONG DataObject::AddRef() {
    return ++references_;
}

ULONG DataObject::Release() {
    return --references_;
}

HRESULT DataObject::GetData(FORMATETC* format, STGMEDIUM* medium) {
    if (fault::next("IDataObject::GetData") != kSuccess)
        return E_OUTOFMEMORY;
    lastFormat_ = *format;
    if (FAILED(result_))
        return result_;
    if (format->cfFormat != CF_HDROP || format->tymed != TYMED_HGLOBAL || !dropList_)
        return DV_E_FORMATETC;
    medium->tymed = tymed_;
    medium->hGlobal = dropList_;
    medium->pUnkForRelease = this;
    AddRef();
    return S_OK;
}

HRESULT DataObject::GetDataHere(FORMATETC*, STGMEDIUM*) {
    return E_NOTIMPL;
}
HRESULT DataObject::QueryGetData(FORMATETC* format) {
    return format->cfFormat == CF_HDROP && dropList_ ? S_OK : DV_E_FORMATETC;
}
HRESULT DataObject::GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) {
    return E_NOTIMPL;
}
HRESULT DataObject::SetData(FORMATETC*, STGMEDIUM*, BOOL) {
    return E_NOTIMPL;
}
HRESULT DataObject::EnumFormatEtc(DWORD, void**) {
    return E_NOTIMPL;
}
HRESULT DataObject::DAdvise(FORMATETC*, DWORD, void*, DWORD*) {
    return E_NOTIMPL;
}
HRESULT DataObject::DUnadvise(DWORD) {
    return E_NOTIMPL;
}
HRESULT DataObject::EnumDAdvise(void**) {
    return E_NOTIMPL;
}

}  // namespace platform::host
