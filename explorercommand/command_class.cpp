#include "explorercommand/command_class.h"

#include "comserver/class_factory.h"
#include "comserver/class_id.h"
#include "comserver/identifiers.h"
#include "explorercommand/explorer_command.h"

namespace nmshell {

HRESULT getCommandClassObject(Module& module, REFCLSID clsid, REFIID iid, void** object) noexcept {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!IsEqualCLSID(classIdFrom(kCommandClassId), clsid))
        return CLASS_E_CLASSNOTAVAILABLE;
    return makeObject<ClassFactory<ExplorerCommand>>(iid, object, module, SelectionKind::Files);
}

}  // namespace nmshell
