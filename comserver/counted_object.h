// What the servers' objects have in common.
#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "comserver/guard.h"
#include "comserver/module.h"
#include "platform/com.h"

namespace nmshell {

// How a server's objects count themselves and their references. Plainly where one thread makes and uses each
// object; two threads at the same moment may then lose a step of the module's count.
struct PlainCounting {
    static auto up(auto& count) { return ++count; }
    static auto down(auto& count) { return --count; }
};

// Where any thread may use any object.
struct AtomicCounting {
    static auto up(auto& count) { return ++std::atomic_ref(count); }
    static auto down(auto& count) { return --std::atomic_ref(count); }
};

// Counts itself among the live objects of the module, which may be unloaded only when there are none.
template <class CountingOf>
class CountedObject {
  public:
    using Counting = CountingOf;

    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
    virtual ~CountedObject() { Counting::down(module_.ModuleObjectCount); }

    CountedObject(const CountedObject&) = delete;
    CountedObject& operator=(const CountedObject&) = delete;

  protected:
    explicit CountedObject(Module& module) : module_(module) { Counting::up(module_.ModuleObjectCount); }

    Module& module() const { return module_; }

    // The reference counting of every class; a new object has no reference yet.
    ULONG addReference() { return Counting::up(references_); }
    ULONG releaseReference() {
        const ULONG left = Counting::down(references_);
        if (left == 0)
            delete this;
        return left;
    }

  private:
    Module& module_;
    ULONG references_ = 0;
};

// QueryInterface of an object that has one interface, `own`, besides IUnknown.
template <class Interface>
HRESULT giveInterface(Interface& object, REFIID own, REFIID iid, void** target) {
    if (!target)
        return E_POINTER;
    *target = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, own))
        return E_NOINTERFACE;
    *target = &object;
    object.AddRef();
    return S_OK;
}

// A new object, asked for `iid`: the reference that becomes the caller's keeps it alive from then on.
template <class Object, class... Arguments>
HRESULT makeObject(REFIID iid, void** target, Arguments&&... arguments) noexcept {
    if (!target)
        return E_POINTER;
    *target = nullptr;
    return guard(E_OUTOFMEMORY, [&] {
        auto made = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
        const HRESULT result = made->QueryInterface(iid, target);
        if (SUCCEEDED(result))
            static_cast<void>(made.release());
        return result;
    });
}

}  // namespace nmshell
