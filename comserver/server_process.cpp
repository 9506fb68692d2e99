#include "comserver/server_process.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

#include "comserver/guard.h"
#include "foundation/process/folders.h"
#include "platform/module.h"

namespace nmshell {
namespace {

class ModuleHolder {
  public:
    Module& get();

    void end() noexcept {
        std::destroy_at(std::exchange(made_, nullptr));
        owlkit::recordApplicationFolder({});
    }

  private:
    Module* made_ = nullptr;
    alignas(Module) std::byte place_[sizeof(Module)] = {};
};

constinit ModuleHolder theModule;

Module& ModuleHolder::get() {
    if (made_ == nullptr) {
        made_ = std::construct_at(reinterpret_cast<Module*>(place_));
        platform::atUnload([]() noexcept { theModule.end(); });
    }
    return *made_;
}

}  // namespace

Module& processModule() {
    return theModule.get();
}

BOOL enterModule(platform::ModuleRef instance, DWORD reason, void* reserved,
                 const TextLoading& loading) noexcept {
    // At the end of the process the module is left as it is: other threads were stopped wherever they were,
    // maybe in the middle of the heap.
    if (reason == DLL_PROCESS_DETACH && reserved != nullptr)
        return TRUE;
    const HRESULT result = guard(E_FAIL, [&] {
        if (reason == DLL_PROCESS_ATTACH)
            theModule.get().attach(instance, loading);
        else if (reason == DLL_PROCESS_DETACH)
            theModule.get().detach();
        return S_OK;
    });
    return SUCCEEDED(result) ? TRUE : FALSE;
}

}  // namespace nmshell

STDAPI DllCanUnloadNow() {
    return std::atomic_ref(nmshell::processModule().ModuleObjectCount) == 0 ? S_OK : S_FALSE;
}
