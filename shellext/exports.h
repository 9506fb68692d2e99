// The module's entry points, as the system calls them.
#pragma once

#include "platform/com.h"

// A new class object for `clsid`; see getClassObject.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object);

// S_OK when no object of this module is alive, else S_FALSE.
STDAPI DllCanUnloadNow();

// Loads the languages on process attach and frees what is cached on detach, both only while the extension is
// enabled. FALSE when that fails with an exception. Does nothing at the end of the process, which is a detach
// with something `reserved`.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);
