// The module's entry points, as the system calls them.
#pragma once

#include "platform/com.h"

// A new class object for `clsid`; see getClassObject.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object);

// See canUnloadNow.
STDAPI DllCanUnloadNow();

// See enterModule; English is the language to fall back to.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);
