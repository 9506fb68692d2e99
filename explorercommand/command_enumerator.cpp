#include "explorercommand/command_enumerator.h"

#include <algorithm>
#include <utility>

#include "comserver/class_factory.h"

namespace nmshell {

CommandEnumerator::CommandEnumerator(Module& module, const CommandSettings& settings,
                                     ExplorerCommand::Place place, std::vector<MenuEntry> entries,
                                     std::size_t next)
    : CountedObject(module),
      settings_(settings),
      place_(std::move(place)),
      entries_(std::move(entries)),
      next_(next) {}

HRESULT CommandEnumerator::QueryInterface(REFIID iid, void** object) {
    return giveInterface<IEnumExplorerCommand>(*this, IID_IEnumExplorerCommand, iid, object);
}

std::unique_ptr<ExplorerCommand> CommandEnumerator::make(std::size_t position) const {
    ExplorerCommand::Place place = place_;
    place.push_back(position);
    return std::make_unique<ExplorerCommand>(module(), settings_, std::move(place), entries_[position]);
}

HRESULT CommandEnumerator::Next(ULONG count, IExplorerCommand** commands, ULONG* fetched) {
    if (fetched)
        *fetched = 0;
    if (!commands || (!fetched && count != 1))
        return E_POINTER;
    std::fill_n(commands, count, nullptr);
    return guard(E_OUTOFMEMORY, [&] {
        std::vector<std::unique_ptr<ExplorerCommand>> made;
        const std::size_t last = std::min<std::size_t>(entries_.size() - next_, count) + next_;
        for (std::size_t position = next_; position < last; ++position)
            made.push_back(make(position));
        for (std::unique_ptr<ExplorerCommand>& command : made) {
            command->AddRef();
            *commands++ = command.release();
        }
        next_ = last;
        if (fetched)
            *fetched = static_cast<ULONG>(made.size());
        return made.size() == count ? S_OK : S_FALSE;
    });
}

HRESULT CommandEnumerator::Skip(ULONG count) {
    const std::size_t skipped = std::min<std::size_t>(entries_.size() - next_, count);
    next_ += skipped;
    return skipped == count ? S_OK : S_FALSE;
}

HRESULT CommandEnumerator::Reset() {
    next_ = 0;
    return S_OK;
}

HRESULT CommandEnumerator::Clone(IEnumExplorerCommand** copy) {
    return makeObject<CommandEnumerator>(IID_IEnumExplorerCommand, reinterpret_cast<void**>(copy), module(),
                                         settings_, place_, entries_, next_);
}

}  // namespace nmshell
