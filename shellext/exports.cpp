#include "shellext/exports.h"

#include "shellext/class_factory.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    return nmshell::getClassObject(nmshell::processModule(), clsid, iid, object);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    return nmshell::enterModule(instance, reason, reserved, {});
}
