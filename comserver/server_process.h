// What the entry points of every server do, on the one module of the process.
#pragma once

#include <string_view>

#include "comserver/module.h"
#include "platform/com.h"

namespace nmshell {

// The one module of this process, made on first use and destroyed when the DLL is unloaded.
Module& processModule();

// DllCanUnloadNow: S_OK when no object of the module is alive, else S_FALSE.
HRESULT canUnloadNow();

// DllMain: loads the languages on process attach, `primary` being the one to fall back to, and frees what is
// cached on detach, both only while the extension is enabled. FALSE when that fails with an exception. Does
// nothing at the end of the process, which is a detach with something `reserved`.
BOOL enterModule(platform::ModuleRef instance, DWORD reason, void* reserved,
                 std::u16string_view primary) noexcept;

}  // namespace nmshell
