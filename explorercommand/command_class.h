// The class of the root command.
#pragma once

#include "comserver/module.h"
#include "platform/com.h"

namespace nmshell {

// A new class object for `clsid`, asked for `iid`, in `*object`. CLASS_E_CLASSNOTAVAILABLE for an unknown
// class. While the extension is switched off there is one, too: its command then says that it is hidden.
HRESULT getCommandClassObject(Module& module, REFCLSID clsid, REFIID iid, void** object) noexcept;

}  // namespace nmshell
