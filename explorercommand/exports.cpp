// The entry points of nmcommand.dll, as the system calls them, beside that of every server.
#include "comserver/server_process.h"
#include "explorercommand/command_class.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    return nmshell::getCommandClassObject(nmshell::processModule(), clsid, iid, object);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    return nmshell::enterModule(instance, reason, reserved, nmshell::kCommandTexts);
}
