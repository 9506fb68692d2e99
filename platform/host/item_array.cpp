#include "platform/host/item_array_host.h"

#include <cstdlib>
#include <new>

#include "platform/host/fault.h"

const IID IID_IShellItem = {0x43826D1E, 0xE718, 0x42EE, {0xBC, 0x55, 0xA1, 0xE2, 0x61, 0xC3, 0x7B, 0xFE}};
const IID IID_IShellItemArray = {
    0xB63EA76D, 0x1F85, 0x456F, {0xA1, 0x9C, 0x48, 0x15, 0x9E, 0xFA, 0x85, 0x8B}};
const IID IID_IExplorerCommand = {
    0xA08CE4D0, 0xFA25, 0x44AB, {0xB5, 0x7C, 0xC7, 0xB1, 0xC3, 0x23, 0xE0, 0xB9}};
const IID IID_IEnumExplorerCommand = {
    0xA88826F8, 0x186F, 0x4987, {0xAA, 0xDE, 0xEA, 0x0C, 0xEF, 0x8F, 0xBF, 0xE8}};

void* CoTaskMemAlloc(std::size_t bytes) {
    return platform::fault::next("CoTaskMemAlloc") == platform::kSuccess ? std::malloc(bytes) : nullptr;
}

void CoTaskMemFree(void* memory) {
    std::free(memory);
}

namespace platform::host {
namespace {

bool fails(const char* operation) {
    return fault::next(operation) != kSuccess;
}

// `object` under its own interface or as IUnknown.
template <class Interface>
HRESULT query(Interface* self, REFIID own, REFIID iid, void** object) {
    const bool known = iid == IID_IUnknown || iid == own;
    *object = known ? self : nullptr;
    if (known)
        self->AddRef();
    return known ? S_OK : E_NOINTERFACE;
}

// Holds a reference to the array as long as it lives.
class Item final : public IShellItem {
  public:
    Item(IShellItemArray& array, const std::optional<std::u16string>& path) : array_(array), path_(path) {
        array_.AddRef();
    }
    virtual ~Item() { array_.Release(); }
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;

    HRESULT QueryInterface(REFIID iid, void** object) override {
        return query<IShellItem>(this, IID_IShellItem, iid, object);
    }
    ULONG AddRef() override { return ++references_; }
    ULONG Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT BindToHandler(IBindCtx*, REFGUID, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT GetParent(IShellItem**) override { return E_NOTIMPL; }
    HRESULT GetDisplayName(SIGDN kind, LPWSTR* name) override {
        *name = nullptr;
        if (fails("IShellItem::GetDisplayName") || kind != SIGDN_FILESYSPATH || !path_)
            return E_FAIL;
        if (path_->empty())
            return S_OK;
        const std::size_t bytes = (path_->size() + 1) * sizeof(char16_t);
        void* const memory = std::malloc(bytes);
        std::memcpy(memory, path_->c_str(), bytes);
        *name = static_cast<LPWSTR>(memory);
        return S_OK;
    }
    HRESULT GetAttributes(SFGAOF, SFGAOF*) override { return E_NOTIMPL; }
    HRESULT Compare(IShellItem*, DWORD, int*) override { return E_NOTIMPL; }

  private:
    IShellItemArray& array_;
    const std::optional<std::u16string>& path_;
    ULONG references_ = 1;
};

}  // namespace

HRESULT ItemArray::QueryInterface(REFIID iid, void** object) {
    return query<IShellItemArray>(this, IID_IShellItemArray, iid, object);
}
ULONG ItemArray::AddRef() {
    return ++references_;
}
ULONG ItemArray::Release() {
    return --references_;
}

HRESULT ItemArray::GetCount(DWORD* count) {
    if (fails("IShellItemArray::GetCount"))
        return E_FAIL;
    *count = static_cast<DWORD>(paths_.size());
    return S_OK;
}

HRESULT ItemArray::GetItemAt(DWORD index, IShellItem** item) {
    *item = nullptr;
    if (fails("IShellItemArray::GetItemAt") || index >= paths_.size())
        return E_FAIL;
    try {
        *item = new Item(*this, paths_[index]);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

HRESULT ItemArray::BindToHandler(IBindCtx*, REFGUID, REFIID, void**) {
    return E_NOTIMPL;
}
HRESULT ItemArray::GetPropertyStore(int, REFIID, void**) {
    return E_NOTIMPL;
}
HRESULT ItemArray::GetPropertyDescriptionList(const PROPERTYKEY&, REFIID, void**) {
    return E_NOTIMPL;
}
HRESULT ItemArray::GetAttributes(int, SFGAOF, SFGAOF*) {
    return E_NOTIMPL;
}
HRESULT ItemArray::EnumItems(IEnumShellItems**) {
    return E_NOTIMPL;
}

}  // namespace platform::host
