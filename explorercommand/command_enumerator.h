// The commands below one command, one after the other. The place among them is plain: two threads must not
// share one enumerator, as they may share a command; each gets its own (EnumSubCommands, Clone).
#pragma once

#include "explorercommand/explorer_command.h"

namespace nmshell {

class CommandEnumerator final : public CountedObject<AtomicCounting>, public IEnumExplorerCommand {
  public:
    // `entries` stand below the command at `place`; the first of them comes next unless `next` says another.
    CommandEnumerator(Module& module, const CommandSettings& settings, ExplorerCommand::Place place,
                      std::vector<MenuEntry> entries, std::size_t next = 0);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return addReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return releaseReference(); }

    // S_FALSE for fewer than `count`. A failure hands nothing out and goes no further. `fetched` may be
    // missing for one.
    HRESULT STDMETHODCALLTYPE Next(ULONG count, IExplorerCommand** commands, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumExplorerCommand** copy) override;

  private:
    std::unique_ptr<ExplorerCommand> make(std::size_t position) const;

    CommandSettings settings_;
    ExplorerCommand::Place place_;
    std::vector<MenuEntry> entries_;
    std::size_t next_;
};

}  // namespace nmshell
