#include "shellext/shell_menu_extension.h"

#include <cstring>

#include "comserver/guard.h"
#include "comserver/settings.h"
#include "contextmenu/commands.h"
#include "contextmenu/dispatch.h"
#include "contextmenu/dropped_paths.h"
#include "contextmenu/menu_insertion.h"
#include "contextmenu/menu_model.h"
#include "foundation/charset/convert.h"

namespace nmshell {
namespace {

constexpr UINT kFlagsWithoutEntries = CMF_DEFAULTONLY | CMF_VERBSONLY | CMF_NOVERBS;

constexpr HRESULT identifiersUsed(std::uint32_t count) {
    return MAKE_HRESULT(SEVERITY_SUCCESS, 0, count);
}

// Verbs that are texts are addresses, which do not fit in 16 bits. A caller that names a verb by a wide text
// may leave the narrow one out, and nothing there must not be taken for offset 0.
bool hasOffset(const CMINVOKECOMMANDINFO& info) {
    const auto isOffset = [](const void* verb) { return reinterpret_cast<UINT_PTR>(verb) <= 0xFFFF; };
    if (info.cbSize >= sizeof(CMINVOKECOMMANDINFOEX) && (info.fMask & CMIC_MASK_UNICODE) != 0 &&
        !isOffset(reinterpret_cast<const CMINVOKECOMMANDINFOEX&>(info).lpVerbW))
        return false;
    return isOffset(info.lpVerb);
}

}  // namespace

ShellMenuExtension::ShellMenuExtension(Module& module, SelectionKind kind)
    : CountedObject(module), launcher_(module.handover), icons_(ShowIcons()) {
    selection_.kind = kind;
    launcher_.setModuleFolder(module.folder);
}

ShellMenuExtension::~ShellMenuExtension() {
    if (recycleBinOwner_)
        module().recycleBinMenuLive = false;
}

HRESULT ShellMenuExtension::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IShellExtInit))
        *object = static_cast<IShellExtInit*>(this);
    else if (IsEqualIID(iid, IID_IContextMenu))
        *object = static_cast<IContextMenu*>(this);
    else
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT ShellMenuExtension::Initialize(PCIDLIST_ABSOLUTE, IDataObject* data, HKEY) {
    refused_ = true;
    if (!module().languageLoaded)
        return E_FAIL;
    const HRESULT result = guard(E_FAIL, [&] {
        // A failure must not leave the count of one selection with the paths of another.
        selection_.count = 0;
        selection_.count = CollectDroppedPaths(data, selection_.paths);
        return S_OK;
    });
    refused_ = FAILED(result);
    return result;
}

HRESULT ShellMenuExtension::QueryContextMenu(HMENU menu, UINT index, UINT idFirst, UINT idLast, UINT flags) {
    // Whether all identifiers fit between the two bounds is not checked: a caller with a narrower range gets
    // the menu too.
    if (refused_ || !module().languageLoaded || module().recycleBinMenuLive ||
        (flags & kFlagsWithoutEntries) != 0 || idLast <= idFirst)
        return identifiersUsed(0);
    return guard(E_FAIL, [&] { return addEntries(menu, index, idFirst); });
}

HRESULT ShellMenuExtension::addEntries(HMENU menu, UINT index, UINT idFirst) {
    Module& shared = module();
    const std::vector<MenuEntry> entries =
        buildMenu(selection_, gatherFacts(selection_, shared.systemDrive), shared.texts);
    if (entries.empty())
        return identifiersUsed(0);
    if (selection_.kind == SelectionKind::RecycleBin)
        recycleBinOwner_ = shared.recycleBinMenuLive = true;
    MenuInserter(idFirst, icons_, shared.bitmaps).insert(menu, index, entries);
    return identifiersUsed(kCommandCount);
}

HRESULT ShellMenuExtension::InvokeCommand(CMINVOKECOMMANDINFO* info) {
    if (!info || !hasOffset(*info))
        return E_FAIL;
    return guard(E_FAIL, [&] {
        const auto offset = static_cast<std::uint32_t>(reinterpret_cast<UINT_PTR>(info->lpVerb));
        return dispatch(offset, info->hwnd, selection_, launcher_) ? S_OK : E_FAIL;
    });
}

HRESULT ShellMenuExtension::GetCommandString(UINT_PTR id, UINT type, UINT*, CHAR* name, UINT size) {
    switch (type) {
        case GCS_VALIDATEW:
            // Compatible: hosts that validate a verb get yes for the first offset alone.
            return id == kWipeFiles ? S_OK : S_FALSE;
        case GCS_HELPTEXTW:
            return guard(E_FAIL, [&] { return copyHelpText(id, name, size); });
        default:
            return E_FAIL;
    }
}

HRESULT ShellMenuExtension::copyHelpText(UINT_PTR id, CHAR* name, UINT size) {
    std::u16string text;
    if (id < kCommandCount)
        owlkit::appendUtf8(text, module().texts.keptText(command(static_cast<std::uint32_t>(id)).helpKey));
    const std::size_t bytes = (text.size() + 1) * sizeof(char16_t);
    if (text.empty() || !name || std::size_t{size} * sizeof(char16_t) < bytes)
        return E_FAIL;
    std::memcpy(name, text.c_str(), bytes);  // the method is declared for both character types
    return S_OK;
}

}  // namespace nmshell
