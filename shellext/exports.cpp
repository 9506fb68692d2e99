#include "shellext/exports.h"

#include "shellext/class_factory.h"
#include "shellext/guard.h"

namespace {

// The one module of this process, built on first use and destroyed when the DLL is unloaded.
nmshell::Module& theModule() {
    static nmshell::Module module;
    return module;
}

}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    return nmshell::getClassObject(theModule(), clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    return theModule().liveObjects == 0 ? S_OK : S_FALSE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    const HRESULT result = nmshell::guard(E_FAIL, [&] {
        if (reason == DLL_PROCESS_ATTACH)
            theModule().attach(instance);
        else if (reason == DLL_PROCESS_DETACH)
            theModule().detach();
        return S_OK;
    });
    return SUCCEEDED(result) ? TRUE : FALSE;
}
