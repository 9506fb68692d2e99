#include "contextmenu/dropped_paths.h"

#include <utility>

#include "platform/shell.h"

namespace nmshell {
namespace {

// The storage medium that a data object handed out; released on every way out.
class Medium {
  public:
    Medium() = default;
    Medium(const Medium&) = delete;
    Medium& operator=(const Medium&) = delete;
    ~Medium() {
        if (held_)
            ReleaseStgMedium(&medium_);
    }

    bool getDropList(IDataObject& data) {
        FORMATETC format = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        held_ = SUCCEEDED(data.GetData(&format, &medium_));
        return held_ && medium_.tymed == TYMED_HGLOBAL;
    }

    HGLOBAL global() const { return medium_.hGlobal; }

  private:
    STGMEDIUM medium_ = {};
    bool held_ = false;
};

}  // namespace

std::uint32_t CollectDroppedPaths(IDataObject* data, owlkit::PathList& paths) {
    paths = {};
    Medium medium;
    if (!data || !medium.getDropList(*data))
        return 0;
    platform::DropList list = platform::readDropList(medium.global());
    paths = owlkit::PathList::fromText(std::move(list.paths));
    // An item that cannot be read is left out of the list but stays counted: what is offered for the
    // selection goes by the count.
    return list.count;
}

}  // namespace nmshell
