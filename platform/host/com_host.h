// A data object for the host, and what tests may ask about media.
#pragma once

#include <cstdint>

#include "platform/com.h"

namespace platform::host {

// How many media ReleaseStgMedium has released since the last resetCom(); tests may set it back.
std::uint32_t& releasedMedia();

// Forgets the released media.
void resetCom();

// A data object with one drop list (made by the host's shell stand-in and owned by the caller, who keeps it
// alive), or with none (nullptr). GetData hands out CF_HDROP and calls it a medium of the kind `tymed`, or
// fails with `result` when that is a failure; an injected fault of "IDataObject::GetData" makes it fail with
// E_OUTOFMEMORY. Lives on the caller's stack: Release only counts.
class DataObject final : public IDataObject {
  public:
    explicit DataObject(HGLOBAL dropList, HRESULT result = S_OK, DWORD tymed = TYMED_HGLOBAL);
    virtual ~DataObject() = default;

    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;
    HRESULT GetData(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT GetDataHere(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT QueryGetData(FORMATETC* format) override;
    HRESULT GetCanonicalFormatEtc(FORMATETC* in, FORMATETC* out) override;
    HRESULT SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) override;
    HRESULT EnumFormatEtc(DWORD direction, void** formats) override;
    HRESULT DAdvise(FORMATETC* format, DWORD flags, void* sink, DWORD* connection) override;
    HRESULT DUnadvise(DWORD connection) override;
    HRESULT EnumDAdvise(void** advises) override;

    // References that callers still hold; 0 when everything was given back.
    ULONG references() const { return references_; }
    // The format that GetData was last asked for when no injected fault stopped it.
    const FORMATETC& lastFormat() const { return lastFormat_; }

  private:
    HGLOBAL dropList_;
    HRESULT result_;
    DWORD tymed_;
    ULONG references_ = 0;
    FORMATETC lastFormat_{};
};

}  // namespace platform::host
