#include "comserver/server_process.h"

#include <atomic>
#include <memory>

#include "comserver/guard.h"
#include "foundation/process/folders.h"

namespace nmshell {
namespace {

// At the end of the process the module is left as it is: other threads were stopped wherever they were, maybe
// in the middle of the heap.
class ModuleHolder {
  public:
    constexpr ModuleHolder() : none_() {}
    ~ModuleHolder() {
        if (made_ == nullptr || processEnds)
            return;
        std::destroy_at(made_);
        owlkit::recordApplicationFolder({});
    }
    ModuleHolder(const ModuleHolder&) = delete;
    ModuleHolder& operator=(const ModuleHolder&) = delete;

    Module& get() {
        if (made_ == nullptr)
            made_ = std::construct_at(&module_);
        return *made_;
    }

    bool processEnds = false;

  private:
    Module* made_ = nullptr;
    union {
        char none_;
        Module module_;
    };
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
    if (reason == DLL_PROCESS_DETACH && reserved != nullptr) {
        theModule.processEnds = true;
        return TRUE;
    }
    const HRESULT result = guard(E_FAIL, [&] {
        if (reason == DLL_PROCESS_ATTACH)
            theModule.get().attach(instance, primary);
        else if (reason == DLL_PROCESS_DETACH)
            theModule.get().detach();
        return S_OK;
    });
    return SUCCEEDED(result) ? TRUE : FALSE;
}

}  // namespace nmshell
