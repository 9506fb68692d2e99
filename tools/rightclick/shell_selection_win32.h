// The selected objects as the shell knows them, and as a data object of our own where it knows them not.
#pragma once

#include <string>
#include <vector>

#include "contextmenu/selection.h"
#include "platform/com.h"
#include "tools/rightclick/com_pointer.h"

namespace rightclick {

struct ItemListTraits {
    using Type = PIDLIST_ABSOLUTE;
    static constexpr Type none() { return nullptr; }
    static void close(Type list) noexcept { ILFree(list); }
};
using ItemList = platform::UniqueHandle<ItemListTraits>;

class ShellSelection {
  public:
    // SHParseDisplayName for each path, or the Recycle Bin's own place. Empty when the shell cannot name them
    // all or when they do not lie in one folder.
    static ShellSelection find(nmshell::SelectionKind kind, const std::vector<std::u16string>& paths);

    // IShellFolder::GetUIObjectOf for all of them; null when there is none.
    ComPointer<IDataObject> dataObject() const;
    ComPointer<IContextMenu> contextMenu() const;

  private:
    void* uiObject(REFIID iid) const;

    std::vector<ItemList> items_;
    ComPointer<IShellFolder> folder_;
    std::vector<PCUITEMID_CHILD> children_;  // the last parts of items_
};

// Whether `data` gives a drop list that names `count` objects of that kind which are there.
bool dropsObjects(IDataObject& data, nmshell::SelectionKind kind, std::size_t count);

// A data object that gives CF_HDROP with these paths, and nothing else.
ComPointer<IDataObject> makeDropObject(const std::vector<std::u16string>& paths);

// The shell's array of the objects with these paths. SHCreateShellItemArrayFromIDLists. A Failure when the
// shell cannot name them.
ComPointer<IShellItemArray> makeItemArray(const std::vector<std::u16string>& paths);

}  // namespace rightclick
