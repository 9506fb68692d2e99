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
        // Compatible: no primary language here, unlike at load time; translators who try a file of their own
        // see the key of a text that it lacks.
        module.applyLanguage(settings.language(), u"");
        // Compatible: a factory that lacks the interface asked for stays alive; the count of objects includes
        // it.
        return (new ShellMenuClassFactory(module, *kind))->QueryInterface(iid, object);
    });
}

}  // namespace nmshell
