#include "comserver/server_process.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

#include "comserver/guard.h"
#include "foundation/process/folders.h"

namespace nmshell {
namespace {

// Made and ended by the entry point, not by a destructor: what registers one needs memory, and without it
// nobody would end the module.
class ModuleHolder {
  public:
    Module& get() {
        if (made_ == nullptr)
            made_ = std::construct_at(reinterpret_cast<Module*>(place_));
        return *made_;
    }

    void end() noexcept {
        if (made_ == nullptr)
            return;
        std::destroy_at(std::exchange(made_, nullptr));
        owlkit::recordApplicationFolder({});
    }

  private:
    Module* made_ = nullptr;
    alignas(Module) std::byte place_[sizeof(Module)] = {};
};

constinit ModuleHolder theModule;

}  // namespace

Module& processModule() {
    return theModule.get();
}

HRESULT canUnloadNow() {
    return std::atomic_ref(theModule.get().ModuleObjectCount) == 0 ? S_OK : S_FALSE;
}

BOOL enterModule(platform::ModuleRef instance, DWORD reason, void* reserved,
                 std::u16string_view primary) noexcept {
    // At the end of the process the module is left as it is: other threads were stopped wherever they were,
    // maybe in the middle of the heap.
    const bool attaches = reason == DLL_PROCESS_ATTACH;
    if (!attaches && (reason != DLL_PROCESS_DETACH || reserved != nullptr))
        return TRUE;
    const HRESULT result = guard(E_FAIL, [&] {
        if (attaches)
            theModule.get().attach(instance, primary);
        else
            theModule.get().detach();
        return S_OK;
    });
    if (!attaches || FAILED(result))
        theModule.end();
    return SUCCEEDED(result) ? TRUE : FALSE;
}

}  // namespace nmshell
