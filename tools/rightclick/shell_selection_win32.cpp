#include "tools/rightclick/shell_selection_win32.h"

#include <algorithm>

#include "contextmenu/dropped_paths.h"
#include "foundation/path/path.h"
#include "foundation/path/path_list.h"
#include "platform/shell.h"
#include "tools/rightclick/failure.h"

namespace rightclick {
namespace {

using nmshell::SelectionKind;

// Both are file-system objects, the drives too: what they need is to be in one folder.
bool inSameFolder(PCIDLIST_ABSOLUTE first, PCIDLIST_ABSOLUTE second) {
    const ItemList a(ILClone(first));
    const ItemList b(ILClone(second));
    return a && b && ILRemoveLastID(a.get()) && ILRemoveLastID(b.get()) && ILIsEqual(a.get(), b.get());
}

bool findItems(SelectionKind kind, const std::vector<std::u16string>& paths, std::vector<ItemList>& items) {
    PIDLIST_ABSOLUTE found = nullptr;
    if (kind == SelectionKind::RecycleBin) {
        const bool known = SUCCEEDED(SHGetSpecialFolderLocation(nullptr, CSIDL_BITBUCKET, &found));
        items.emplace_back(found);
        return known;
    }
    for (const std::u16string& path : paths) {
        if (FAILED(SHParseDisplayName(platform::wide(path), nullptr, &found, 0, nullptr)))
            return false;
        items.emplace_back(found);
    }
    return true;
}

bool isThere(SelectionKind kind, const std::u16string& path) {
    if (kind == SelectionKind::Drives)
        return platform::driveNumber(path) >= 0;
    return owlkit::pathType(path) != owlkit::PathType::Unreadable;
}

}  // namespace

ShellSelection ShellSelection::find(SelectionKind kind, const std::vector<std::u16string>& paths) {
    ShellSelection selection;
    if (!findItems(kind, paths, selection.items_) || selection.items_.empty())
        return {};
    const PCIDLIST_ABSOLUTE first = selection.items_.front().get();
    for (const ItemList& item : selection.items_) {
        if (!inSameFolder(first, item.get()))
            return {};
        selection.children_.push_back(ILFindLastID(item.get()));
    }
    if (FAILED(SHBindToParent(first, IID_IShellFolder, receive(selection.folder_), nullptr)))
        return {};
    return selection;
}

void* ShellSelection::uiObject(REFIID iid) const {
    void* object = nullptr;
    if (!folder_ || FAILED(folder_.get()->GetUIObjectOf(nullptr, static_cast<UINT>(children_.size()),
                                                        const_cast<PCUITEMID_CHILD*>(children_.data()), iid,
                                                        nullptr, &object)))
        return nullptr;
    return object;
}

ComPointer<IDataObject> ShellSelection::dataObject() const {
    return ComPointer<IDataObject>(static_cast<IDataObject*>(uiObject(IID_IDataObject)));
}

ComPointer<IContextMenu> ShellSelection::contextMenu() const {
    return ComPointer<IContextMenu>(static_cast<IContextMenu*>(uiObject(IID_IContextMenu)));
}

ComPointer<IShellItemArray> makeItemArray(const std::vector<std::u16string>& paths) {
    std::vector<ItemList> items;
    if (!findItems(SelectionKind::Files, paths, items))
        throw Failure(ExitCode::PlatformFailure, "the shell does not know the selected objects");
    std::vector<PCIDLIST_ABSOLUTE> lists;
    for (const ItemList& item : items)
        lists.push_back(item.get());
    ComPointer<IShellItemArray> array;
    require(SHCreateShellItemArrayFromIDLists(static_cast<UINT>(lists.size()), lists.data(), receive(array)),
            "the shell makes no array of the selected objects");
    return array;
}

bool dropsObjects(IDataObject& data, SelectionKind kind, std::size_t count) {
    owlkit::PathList dropped;
    return nmshell::CollectDroppedPaths(&data, dropped) == count && dropped.count() == count &&
           std::ranges::all_of(dropped,
                               [&](std::u16string_view path) { return isThere(kind, std::u16string(path)); });
}

}  // namespace rightclick
