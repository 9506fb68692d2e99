// The class objects of the context-menu extension: one class for each kind of selection.
#pragma once

#include "comserver/class_factory.h"
#include "shellext/shell_menu_extension.h"

namespace nmshell {

using ShellMenuClassFactory = ClassFactory<ShellMenuExtension>;

// What DllGetClassObject does, on a given module: a new class object for `clsid`, asked for `iid`, in
// `*object`. CLASS_E_CLASSNOTAVAILABLE for an unknown class or while the extension is switched off. Applies
// the language setting.
HRESULT getClassObject(Module& module, REFCLSID clsid, REFIID iid, void** object) noexcept;

}  // namespace nmshell
