// Class objects: they make objects of one class, each for one kind of selection.
#pragma once

#include "comserver/counted_object.h"
#include "contextmenu/selection.h"

namespace nmshell {

// `Object` is a counted object that is made from the module and the kind.
template <class Object>
class ClassFactory final : public CountedObject<typename Object::Counting>, public IClassFactory {
  public:
    ClassFactory(Module& module, SelectionKind kind)
        : CountedObject<typename Object::Counting>(module), kind_(kind) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return giveInterface<IClassFactory>(*this, IID_IClassFactory, iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return this->addReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return this->releaseReference(); }

    // IClassFactory. Aggregation is refused with CLASS_E_NOAGGREGATION.
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        return makeObject<Object>(iid, object, this->module(), kind_);
    }
    // Compatible: locks are not counted; what replaces the files relies on only live objects holding the
    // module.
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  private:
    SelectionKind kind_;
};

}  // namespace nmshell
