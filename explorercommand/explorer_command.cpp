#include "explorercommand/explorer_command.h"

#include <cstring>

#include "comserver/class_factory.h"
#include "comserver/settings.h"
#include "contextmenu/dispatch.h"
#include "explorercommand/command_enumerator.h"
#include "foundation/charset/convert.h"
#include "foundation/text/number.h"

namespace nmshell {
namespace {

// Whether the text depends on the selection: every other entry has one key in the table of commands.
bool textNeedsFacts(const MenuEntry& entry) {
    return entry.submenu || (entry.offset < kCommandCount && command(entry.offset).menuKey.empty());
}

// `make` gives the text; none is `missing`. The caller frees it.
HRESULT giveText(LPWSTR* target, HRESULT missing, auto make) {
    if (!target)
        return E_POINTER;
    *target = nullptr;
    return guard(E_OUTOFMEMORY, [&] {
        const std::u16string text = make();
        if (text.empty())
            return missing;
        const std::size_t bytes = (text.size() + 1) * sizeof(char16_t);
        void* const memory = CoTaskMemAlloc(bytes);
        if (!memory)
            return E_OUTOFMEMORY;
        std::memcpy(memory, text.c_str(), bytes);
        *target = static_cast<LPWSTR>(memory);
        return S_OK;
    });
}

}  // namespace

ExplorerCommand::ExplorerCommand(Module& module, SelectionKind kind) : CountedObject(module) {
    ShellSettings settings;
    settings_ = {kind, module.languageLoaded && settings.isEnabled(), settings.showIcons()};
    entry_.submenu = true;
    if (settings_.offered)
        entry_ = commandTree({kind, 1, {}}, {}, module.texts);
}

ExplorerCommand::ExplorerCommand(Module& module, const CommandSettings& settings, Place place,
                                 MenuEntry entry)
    : CountedObject(module), settings_(settings), place_(std::move(place)), entry_(std::move(entry)) {}

HRESULT ExplorerCommand::QueryInterface(REFIID iid, void** object) {
    return giveInterface<IExplorerCommand>(*this, IID_IExplorerCommand, iid, object);
}

MenuEntry ExplorerCommand::entryFor(const Selection& selection, const MenuFacts& facts) const {
    MenuEntry entry = commandTree(selection, facts, module().texts);
    for (const std::size_t position : place_) {
        if (position >= entry.children.size())
            return {};
        MenuEntry child = std::move(entry.children[position]);
        entry = std::move(child);
    }
    return entry;
}

HRESULT ExplorerCommand::GetTitle(IShellItemArray* items, LPWSTR* name) {
    return giveText(name, E_FAIL, [&] {
        if (place_.empty() || !textNeedsFacts(entry_))
            return shownText(entry_);
        const Selection selection = selectionFrom(items, settings_.kind, Paths::OfOne);
        return shownText(entryFor(selection, gatherFacts(selection, module().systemDrive)));
    });
}

HRESULT ExplorerCommand::GetIcon(IShellItemArray*, LPWSTR* icon) {
    return giveText(icon, E_NOTIMPL, [&] {
        const Module& shared = module();
        if (!settings_.icons || entry_.bitmap == kNoBitmap || shared.file.empty())
            return std::u16string();
        return shared.file + u",-" + owlkit::formatNumber<char16_t>(entry_.bitmap);
    });
}

HRESULT ExplorerCommand::GetToolTip(IShellItemArray*, LPWSTR* text) {
    return giveText(text, E_NOTIMPL, [&] {
        if (entry_.offset >= kCommandCount)
            return std::u16string();
        return owlkit::ToWide(module().texts.keptText(command(entry_.offset).helpKey), owlkit::kCharsetUtf8);
    });
}

HRESULT ExplorerCommand::GetCanonicalName(GUID* name) {
    if (!name)
        return E_POINTER;
    *name = canonicalName(entry_, place_.empty());
    return S_OK;
}

HRESULT ExplorerCommand::GetState(IShellItemArray* items, BOOL mayBeSlow, EXPCMDSTATE* target) {
    if (!target)
        return E_POINTER;
    *target = ECS_HIDDEN;
    if (!settings_.offered)
        return S_OK;
    return guard(E_OUTOFMEMORY, [&] { return state(items, mayBeSlow != FALSE, *target); });
}

HRESULT ExplorerCommand::state(IShellItemArray* items, bool mayBeSlow, EXPCMDSTATE& target) const {
    // With files nothing depends on more than the number of items.
    const bool needsFacts = !place_.empty() && settings_.kind != SelectionKind::Files;
    const bool asks = needsFacts && mayBeSlow;
    const Selection selection = selectionFrom(items, settings_.kind, asks ? Paths::OfOne : Paths::None);
    if (selection.count == 0)
        return S_OK;
    target = ECS_DISABLED;  // as long as it is not known
    if (needsFacts && !asks)
        return E_PENDING;
    const MenuFacts facts = asks ? gatherFacts(selection, module().systemDrive) : MenuFacts{};
    target = entryFor(selection, facts).grayed ? ECS_DISABLED : ECS_ENABLED;
    return S_OK;
}

HRESULT ExplorerCommand::Invoke(IShellItemArray* items, IBindCtx*) {
    if (entry_.offset == kNoCommand)  // as the root, which alone there is of what is not offered
        return E_FAIL;
    return guard(E_OUTOFMEMORY, [&] {
        const auto paths = command(entry_.offset).data == RequestData::PathList ? Paths::All : Paths::None;
        const Selection selection = selectionFrom(items, settings_.kind, paths);
        if (selection.count == 0)
            return E_FAIL;
        ApplicationLauncher launcher(module().handover);
        launcher.setModuleFolder(module().folder);
        return dispatch(entry_.offset, nullptr, selection, launcher) ? S_OK : E_FAIL;
    });
}

HRESULT ExplorerCommand::GetFlags(EXPCMDFLAGS* flags) {
    if (!flags)
        return E_POINTER;
    *flags = ECF_DEFAULT;
    if (entry_.isSeparator())
        *flags = ECF_ISSEPARATOR;
    else if (entry_.submenu)
        *flags = ECF_HASSUBCOMMANDS;
    return S_OK;
}

HRESULT ExplorerCommand::EnumSubCommands(IEnumExplorerCommand** commands) {
    if (commands && !entry_.submenu) {
        *commands = nullptr;
        return E_NOTIMPL;
    }
    return makeObject<CommandEnumerator>(IID_IEnumExplorerCommand, reinterpret_cast<void**>(commands),
                                         module(), settings_, place_, entry_.children);
}

}  // namespace nmshell
