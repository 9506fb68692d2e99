#include <cstring>

#include "tools/rightclick/shell_selection_win32.h"

namespace rightclick {
namespace {

// A DROPFILES block with wide paths: each followed by a zero character, and one more zero at the end.
std::string dropBlock(const std::vector<std::u16string>& paths) {
    std::u16string names;
    for (const std::u16string& path : paths) {
        names += path;
        names += u'\0';
    }
    names += u'\0';
    DROPFILES header = {};
    header.pFiles = sizeof header;
    header.fWide = TRUE;
    std::string block(reinterpret_cast<const char*>(&header), sizeof header);
    block.append(reinterpret_cast<const char*>(names.data()), names.size() * sizeof(char16_t));
    return block;
}

class DropObject final : public IDataObject {
  public:
    explicit DropObject(std::string block) : block_(std::move(block)) {}
    virtual ~DropObject() = default;
    DropObject(const DropObject&) = delete;
    DropObject& operator=(const DropObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDataObject);
        *object = known ? static_cast<IDataObject*>(this) : nullptr;
        if (known)
            AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
        if (const HRESULT result = QueryGetData(format); result != S_OK)
            return result;
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, block_.size());
        if (!memory)
            return E_OUTOFMEMORY;
        std::memcpy(GlobalLock(memory), block_.data(), block_.size());
        GlobalUnlock(memory);
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = memory;
        medium->pUnkForRelease = nullptr;  // the caller frees the memory
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override {
        const bool served = format->cfFormat == CF_HDROP && (format->tymed & TYMED_HGLOBAL) != 0;
        return served ? S_OK : DV_E_FORMATETC;
    }

    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

  private:
    std::string block_;
    ULONG references_ = 1;
};

}  // namespace

ComPointer<IDataObject> makeDropObject(const std::vector<std::u16string>& paths) {
    return ComPointer<IDataObject>(new DropObject(dropBlock(paths)));
}

}  // namespace rightclick
