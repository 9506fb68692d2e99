// The shell's array of items for the host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/com.h"

namespace platform::host {

// Items with their file-system paths; one without a path stands for an object that is no file, and one of an
// empty path for an item of a faulty extension, which succeeds without giving a name. GetCount, GetItemAt and
// GetDisplayName (SIGDN_FILESYSPATH alone) work; an injected fault of "IShellItemArray::GetCount",
// "IShellItemArray::GetItemAt" or "IShellItem::GetDisplayName" makes them fail with E_FAIL. Lives on the
// caller's stack: Release only counts.
class ItemArray final : public IShellItemArray {
  public:
    explicit ItemArray(std::vector<std::optional<std::u16string>> paths) : paths_(std::move(paths)) {}
    virtual ~ItemArray() = default;

    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;
    HRESULT BindToHandler(IBindCtx* context, REFGUID handler, REFIID iid, void** object) override;
    HRESULT GetPropertyStore(int flags, REFIID iid, void** store) override;
    HRESULT GetPropertyDescriptionList(const PROPERTYKEY& key, REFIID iid, void** list) override;
    HRESULT GetAttributes(int flags, SFGAOF mask, SFGAOF* attributes) override;
    HRESULT GetCount(DWORD* count) override;
    HRESULT GetItemAt(DWORD index, IShellItem** item) override;
    HRESULT EnumItems(IEnumShellItems** items) override;

    // References to the array and its items that callers still hold.
    ULONG references() const { return references_; }

  private:
    std::vector<std::optional<std::u16string>> paths_;
    ULONG references_ = 0;
};

}  // namespace platform::host
