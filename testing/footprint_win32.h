// What this process holds of what the system counts out.
#pragma once

#include <cstdint>
#include <ostream>

namespace dll_tests {

struct Footprint {
    std::uint32_t freeSlots;       // how many TlsAlloc still gives
    std::uint32_t freeFiberSlots;  // FlsAlloc
    std::uint32_t handles;
    std::uint32_t drawing;     // GDI objects
    std::uint32_t menus;       // on Windows, all objects of the user interface
    std::uint64_t heapBlocks;  // of every heap of the process

    static Footprint now();
    bool operator==(const Footprint&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Footprint& footprint);

}  // namespace dll_tests
