// The common base of the server's objects.
#pragma once

#include "platform/com.h"
#include "shellext/module.h"

namespace nmshell {

// Counts itself among the live objects of the module, which may be unloaded only when there are none.
class CountedObject {
  public:
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
    virtual ~CountedObject() { --module_.liveObjects; }

    CountedObject(const CountedObject&) = delete;
    CountedObject& operator=(const CountedObject&) = delete;

  protected:
    explicit CountedObject(Module& module) : module_(module) { ++module_.liveObjects; }

    Module& module() const { return module_; }

    // The reference counting of both classes; a new object has no reference yet.
    ULONG addReference() { return ++references_; }
    ULONG releaseReference() {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

  private:
    Module& module_;
    ULONG references_ = 0;
};

}  // namespace nmshell
