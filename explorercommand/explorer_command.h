// A command of the first level of the menu: the root, or an entry below it. The shell makes the root, asks it
// and the commands below it about a selection that it names each time anew, and uses them on any thread.
#pragma once

#include <cstddef>
#include <vector>

#include "comserver/counted_object.h"
#include "explorercommand/command_tree.h"
#include "explorercommand/item_selection.h"

namespace nmshell {

// What a root read when it was made, for itself and everything below it.
struct CommandSettings {
    SelectionKind kind = SelectionKind::Files;
    bool offered = false;  // the extension is on and has its texts
    bool icons = false;
};

// Everything but texts and states is the same for every selection: which entries there are and what they do.
// No method throws; memory that runs out is E_OUTOFMEMORY, a missing place for the answer E_POINTER.
class ExplorerCommand final : public CountedObject<AtomicCounting>, public IExplorerCommand {
  public:
    // Where an entry stands: its position in each submenu on the way from the root, which has none.
    using Place = std::vector<std::size_t>;

    // The root. Reads the settings.
    ExplorerCommand(Module& module, SelectionKind kind);
    // The command at `place` for which `entry` stands.
    ExplorerCommand(Module& module, const CommandSettings& settings, Place place, MenuEntry entry);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return addReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return releaseReference(); }

    // The text of the entry, with its "&". E_FAIL for an entry that has none or is not offered.
    HRESULT STDMETHODCALLTYPE GetTitle(IShellItemArray* items, LPWSTR* name) override;
    // "FILE,-ID", an icon resource of the module. E_NOTIMPL without one and with icons switched off.
    HRESULT STDMETHODCALLTYPE GetIcon(IShellItemArray* items, LPWSTR* icon) override;
    // The help text of a command; E_NOTIMPL for all else.
    HRESULT STDMETHODCALLTYPE GetToolTip(IShellItemArray* items, LPWSTR* text) override;
    HRESULT STDMETHODCALLTYPE GetCanonicalName(GUID* name) override;
    // Hidden when nothing is offered or selected, else disabled where the entry is grayed. Asks for nothing
    // but the number of items; a state that needs more is E_PENDING unless `mayBeSlow`.
    HRESULT STDMETHODCALLTYPE GetState(IShellItemArray* items, BOOL mayBeSlow, EXPCMDSTATE* state) override;
    // Does what the entry of the context menu does. E_FAIL for what is no command, for one that is not
    // offered, and without a selection.
    HRESULT STDMETHODCALLTYPE Invoke(IShellItemArray* items, IBindCtx* context) override;
    HRESULT STDMETHODCALLTYPE GetFlags(EXPCMDFLAGS* flags) override;
    // The commands below a submenu; E_NOTIMPL for what is none.
    HRESULT STDMETHODCALLTYPE EnumSubCommands(IEnumExplorerCommand** commands) override;

  private:
    MenuEntry entryFor(const Selection& selection, const MenuFacts& facts) const;
    HRESULT state(IShellItemArray* items, bool mayBeSlow, EXPCMDSTATE& state) const;

    CommandSettings settings_;
    Place place_;
    MenuEntry entry_;  // as it is for one item of which nothing is known
};

}  // namespace nmshell
