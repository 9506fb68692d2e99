#include "shellext/class_factory.h"

#include <iterator>
#include <optional>

#include "comserver/class_id.h"
#include "comserver/guard.h"
#include "comserver/identifiers.h"
#include "comserver/settings.h"

namespace nmshell {
namespace {

std::optional<SelectionKind> kindOf(REFCLSID clsid) {
    for (std::size_t kind = 0; kind < std::size(kClassIds); ++kind)
        if (IsEqualCLSID(classIdFrom(kClassIds[kind]), clsid))
            return static_cast<SelectionKind>(kind);
    return std::nullopt;
}

}  // namespace

HRESULT getClassObject(Module& module, REFCLSID clsid, REFIID iid, void** object) noexcept {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    return guard(E_OUTOFMEMORY, [&]() -> HRESULT {
        ShellSettings settings;
        if (!settings.isEnabled())
            return CLASS_E_CLASSNOTAVAILABLE;
        const std::optional<SelectionKind> kind = kindOf(clsid);
        if (!kind)
            return CLASS_E_CLASSNOTAVAILABLE;
        // Deliberate: no primary language here, unlike at load time; a text that is missing in the active
        // language then shows its key.
        module.applyLanguage(settings.language(), u"");
        // Deliberate: a factory that lacks the interface asked for stays alive, and keeps the module loaded.
        return (new ShellMenuClassFactory(module, *kind))->QueryInterface(iid, object);
    });
}

}  // namespace nmshell
