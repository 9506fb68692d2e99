#include "testing/footprint_win32.h"

#include "platform/win32/win32_api.h"

#include <vector>

namespace dll_tests {
namespace {

// How many more slots can be had.
template <class Take, class Free>
std::uint32_t slotsLeft(Take take, Free free) {
    std::vector<DWORD> slots;
    for (DWORD slot = take(); slot != TLS_OUT_OF_INDEXES; slot = take())
        slots.push_back(slot);
    for (const DWORD slot : slots)
        free(slot);
    return static_cast<std::uint32_t>(slots.size());
}

// Wine answers 0 where Windows counts. There the first handles of each kind are tried one by one: it takes
// one of the user interface by its number alone, without the part that tells one use of the number from the
// next.
template <class Exists>
std::uint32_t counted(DWORD count, UINT_PTR step, Exists exists) {
    for (UINT_PTR handle = step, last = count == 0 ? 0x4000 : 0; handle < last; handle += step)
        count += exists(reinterpret_cast<void*>(handle)) ? 1 : 0;
    return count;
}

DWORD handleCount() {
    DWORD count = 0;
    return GetProcessHandleCount(GetCurrentProcess(), &count) ? count : 0;
}

bool isOpen(HANDLE handle) {
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags) != FALSE;
}

std::uint64_t busyBlocks(HANDLE heap) {
    std::uint64_t count = 0;
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heap);
    while (HeapWalk(heap, &entry))
        count += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? 1 : 0;
    HeapUnlock(heap);
    return count;
}

}  // namespace

Footprint Footprint::now() {
    const HANDLE process = GetCurrentProcess();
    Footprint result = {};
    result.freeSlots = slotsLeft(TlsAlloc, TlsFree);
    result.freeFiberSlots = slotsLeft([] { return FlsAlloc(nullptr); }, FlsFree);
    result.handles = counted(handleCount(), 4, isOpen);
    result.drawing = counted(GetGuiResources(process, GR_GDIOBJECTS), 1, GetObjectType);
    result.menus = counted(GetGuiResources(process, GR_USEROBJECTS), 2,
                           [](void* handle) { return IsMenu(static_cast<HMENU>(handle)) != FALSE; });
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    for (HANDLE heap : heaps)
        result.heapBlocks += busyBlocks(heap);
    return result;
}

std::ostream& operator<<(std::ostream& stream, const Footprint& footprint) {
    return stream << footprint.freeSlots << " + " << footprint.freeFiberSlots << " free slots, "
                  << footprint.handles << " handles, " << footprint.drawing << " drawing objects, "
                  << footprint.menus << " menus, " << footprint.heapBlocks << " heap blocks";
}

}  // namespace dll_tests
