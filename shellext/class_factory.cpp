#include "shellext/class_factory.h"

#include <memory>
#include <optional>

#include "shellext/guard.h"
#include "shellext/settings.h"
#include "shellext/shell_menu_extension.h"

namespace nmshell {
namespace {

struct ClassRow {
    CLSID clsid;
    SelectionKind kind;
};

// The binary form of the identifiers in shellext/identifiers.h, in the same order.
constexpr ClassRow kClasses[] = {
    {{0x3D5C9A72, 0x6E1B, 0x4F08, {0xA4, 0xC3, 0x91, 0xB7, 0xE2, 0xD0, 0x5F, 0x64}}, SelectionKind::Files},
    {{0xC84E10B6, 0x2F7A, 0x4D93, {0x8E, 0x15, 0x6A, 0x0B, 0x3F, 0xD7, 0xC9, 0x21}}, SelectionKind::Drives},
    {{0x7A21E6D3, 0xB94C, 0x4E5F, {0x9D, 0x08, 0x13, 0xC6, 0xA8, 0xF4, 0xB2, 0xE7}},
     SelectionKind::RecycleBin},
};

std::optional<SelectionKind> kindOf(REFCLSID clsid) {
    for (const ClassRow& row : kClasses)
        if (IsEqualCLSID(row.clsid, clsid))
            return row.kind;
    return std::nullopt;
}

}  // namespace

HRESULT ShellMenuClassFactory::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory))
        return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

HRESULT ShellMenuClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (outer)
        return CLASS_E_NOAGGREGATION;
    return guard(E_OUTOFMEMORY, [&] {
        auto extension = std::make_unique<ShellMenuExtension>(module(), kind_);
        const HRESULT result = extension->QueryInterface(iid, object);
        if (SUCCEEDED(result))
            static_cast<void>(extension.release());  // the caller's reference keeps it alive from here on
        return result;
    });
}

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
