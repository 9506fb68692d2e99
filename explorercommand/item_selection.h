// The selection from the shell's array of items.
#pragma once

#include "contextmenu/selection.h"
#include "platform/com.h"

namespace nmshell {

// What facts tell is told of a single item only.
enum class Paths { None, OfOne, All };

// How many items there are, and the file-system paths of all, in order, or that of a single item, or none. An
// item without a path is counted and left out, as in a drop list. No array, or one that cannot be
// counted: no items. Memory that an item could not have is memory that ran out here (std::bad_alloc): a
// selection is read whole or not at all. IShellItemArray::GetCount, GetItemAt, IShellItem::GetDisplayName.
Selection selectionFrom(IShellItemArray* items, SelectionKind kind, Paths paths);

}  // namespace nmshell
