// The entry points of nmcommand.dll, as the system calls them.
#include "comserver/server_process.h"
#include "explorercommand/command_class.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    return nmshell::getCommandClassObject(nmshell::processModule(), clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    return nmshell::canUnloadNow();
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    // No language to fall back to, as in the menus of the context-menu extension.
    return nmshell::enterModule(instance, reason, reserved, u"");
}
