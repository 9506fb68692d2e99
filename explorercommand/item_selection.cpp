#include "explorercommand/item_selection.h"

#include <memory>
#include <new>

namespace nmshell {
namespace {

struct Giver {
    void operator()(IShellItem* item) const { item->Release(); }
    void operator()(void* text) const { CoTaskMemFree(text); }
};

bool worked(HRESULT result) {
    if (result == E_OUTOFMEMORY)
        throw std::bad_alloc();
    return SUCCEEDED(result);
}

void appendPath(IShellItemArray& items, DWORD index, owlkit::PathList& paths) {
    IShellItem* found = nullptr;
    if (!worked(items.GetItemAt(index, &found)) || !found)
        return;
    const std::unique_ptr<IShellItem, Giver> item(found);
    LPWSTR name = nullptr;
    if (!worked(item->GetDisplayName(SIGDN_FILESYSPATH, &name)) || !name)
        return;
    const std::unique_ptr<void, Giver> text(name);
    const std::u16string_view path(reinterpret_cast<const char16_t*>(name));
    if (!path.empty())
        paths.append(path);
}

}  // namespace

Selection selectionFrom(IShellItemArray* items, SelectionKind kind, Paths paths) {
    DWORD count = 0;
    if (!items || !worked(items->GetCount(&count)))
        return {kind, 0, {}};
    Selection selection = {kind, count, {}};
    const bool wanted = paths == Paths::All || (paths == Paths::OfOne && count == 1);
    for (DWORD index = 0; index < count && wanted; ++index)
        appendPath(*items, index, selection.paths);
    return selection;
}

}  // namespace nmshell
