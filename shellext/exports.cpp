#include "shellext/exports.h"

#include <memory>

#include "foundation/process/folders.h"
#include "shellext/class_factory.h"
#include "shellext/guard.h"

namespace {

using nmshell::Module;

// The one module of this process, made on first use and destroyed when the DLL is unloaded. At the end of the
// process it is left as it is: other threads were stopped wherever they were, maybe in the middle of the
// heap.
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

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    return nmshell::getClassObject(theModule.get(), clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    return theModule.get().liveObjects == 0 ? S_OK : S_FALSE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_DETACH && reserved != nullptr) {
        theModule.processEnds = true;
        return TRUE;
    }
    const HRESULT result = nmshell::guard(E_FAIL, [&] {
        if (reason == DLL_PROCESS_ATTACH)
            theModule.get().attach(instance);
        else if (reason == DLL_PROCESS_DETACH)
            theModule.get().detach();
        return S_OK;
    });
    return SUCCEEDED(result) ? TRUE : FALSE;
}
