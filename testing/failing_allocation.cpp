#include "testing/failing_allocation.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace test::failing_allocation {
namespace {

struct State {
    bool counted = false;
    std::uint32_t remaining = 0;  // until one fails; 0: none does
    bool forGood = false;
    bool fired = false;
};
constinit thread_local State state;

void* allocate(std::size_t size) noexcept {
    if (state.counted && state.remaining != 0 && --state.remaining == 0) {
        state.fired = true;
        state.remaining = state.forGood ? 1 : 0;
        return nullptr;
    }
    return std::malloc(size != 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size) {
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

void arm(std::uint32_t nth, bool forGood) {
    state.remaining = nth;
    state.forGood = forGood;
    state.fired = false;
}

void disarm() {
    state.remaining = 0;
}

bool fired() {
    return state.fired;
}

Counted::Counted(bool on) : before_(std::exchange(state.counted, on)) {}

Counted::~Counted() {
    state.counted = before_;
}

}  // namespace test::failing_allocation

// A sanitizer brings all of these forms, each on its own, so each is replaced.
void* operator new(std::size_t size) {
    return test::failing_allocation::allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return test::failing_allocation::allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return test::failing_allocation::allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return test::failing_allocation::allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
