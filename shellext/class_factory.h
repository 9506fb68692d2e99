// Class objects: they make context-menu objects for one kind of selection.
#pragma once

#include "contextmenu/selection.h"
#include "shellext/counted_object.h"

namespace nmshell {

class ShellMenuClassFactory final : public CountedObject, public IClassFactory {
  public:
    ShellMenuClassFactory(Module& module, SelectionKind kind) : CountedObject(module), kind_(kind) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return addReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return releaseReference(); }

    // IClassFactory. Aggregation is refused with CLASS_E_NOAGGREGATION.
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    // Deliberate: locks are not counted, only live objects keep the module loaded.
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  private:
    SelectionKind kind_;
};

// What DllGetClassObject does, on a given module: a new class object for `clsid`, asked for `iid`, in
// `*object`. CLASS_E_CLASSNOTAVAILABLE for an unknown class or while the extension is switched off. Applies
// the language setting.
HRESULT getClassObject(Module& module, REFCLSID clsid, REFIID iid, void** object) noexcept;

}  // namespace nmshell
