// What the entry points of every server do, on the one module of the process.
#pragma once

#include "comserver/module.h"
#include "platform/com.h"

namespace nmshell {

// The one module of this process, made on first use and destroyed when the DLL is unloaded.
Module& processModule();

// DllMain: Module::attach on process attach, Module::detach on detach. FALSE when that fails with an
// exception. Does nothing at the end of the process, which is a detach with something `reserved`.
BOOL enterModule(platform::ModuleRef instance, DWORD reason, void* reserved,
                 const TextLoading& loading) noexcept;

}  // namespace nmshell

// The entry point that is every server's: S_OK when no object of the module is alive, else S_FALSE.
STDAPI DllCanUnloadNow();
