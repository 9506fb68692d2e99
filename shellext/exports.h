// The module's entry points, as the system calls them, beside that of every server.
#pragma once

#include "comserver/server_process.h"

// A new class object for `clsid`; see getClassObject.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object);

// See enterModule.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);
