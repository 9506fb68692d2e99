// The class of the root command.
#pragma once

#include "comserver/module.h"
#include "platform/com.h"

namespace nmshell {

// No language to fall back to, as in the menus of the context-menu extension. Each root command asks whether
// the extension is on: the process may have loaded the module while it was switched off.
inline constexpr TextLoading kCommandTexts = {.primary = u"", .evenSwitchedOff = true};

// A new class object for `clsid`, asked for `iid`, in `*object`. CLASS_E_CLASSNOTAVAILABLE for an unknown
// class. While the extension is switched off there is one, too: its command then says that it is hidden.
HRESULT getCommandClassObject(Module& module, REFCLSID clsid, REFIID iid, void** object) noexcept;

}  // namespace nmshell
