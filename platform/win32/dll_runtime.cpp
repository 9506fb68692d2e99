// What the servers bring themselves of the C++ runtime. A DLL that is loaded and unloaded a thousand times a
// day must give back all that it took: the library keeps the exceptions in flight in thread-local storage
// that it never frees, and sets memory aside for exceptions at every load. The four functions around
// exceptions that stand here are those of the Itanium C++ ABI. Because they are linked first, the library's
// own, and the thread library below them, stay out.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/module.h"
#include "platform/win32/win32_api.h"

namespace {

// The system's fast failure: no handler runs, and a report is kept.
[[noreturn]] void endProcess(unsigned int reason) {
    asm volatile("int $0x29" : : "c"(reason) : "memory");
    __builtin_unreachable();
}

// Blocks for when there is no memory, or not to need any.
template <class Block, std::size_t kCount>
class Reserve {
  public:
    Block* take() {
        for (std::size_t i = 0; i < kCount; ++i)
            if (!taken_[i].exchange(true))
                return &blocks_[i];
        return nullptr;
    }
    // The first block that is taken and that `fits` accepts.
    template <class Fits>
    Block* find(Fits fits) {
        for (std::size_t i = 0; i < kCount; ++i)
            if (taken_[i] && fits(blocks_[i]))
                return &blocks_[i];
        return nullptr;
    }
    // Whether the block is one of these.
    bool giveBack(void* block) {
        for (std::size_t i = 0; i < kCount; ++i) {
            if (block != &blocks_[i])
                continue;
            taken_[i] = false;
            return true;
        }
        return false;
    }

  private:
    Block blocks_[kCount] = {};
    std::atomic<bool> taken_[kCount] = {};
};

// __cxa_eh_globals: the exceptions in flight on one thread; and which thread that is, where the slot cannot
// lead to it.
struct ExceptionState {
    void* caught;
    unsigned int uncaught;
    std::atomic<DWORD> thread;
};

// The library keeps its own header of 160 bytes in front of the object that is thrown.
constexpr std::size_t kHeader = 256;
constexpr std::size_t kLargestReserved = 128;
struct alignas(16) ExceptionBlock {
    std::byte bytes[kHeader + kLargestReserved];
};

constinit Reserve<ExceptionState, 64> states;
constinit Reserve<ExceptionBlock, 32> exceptions;
constinit DWORD slot = FLS_OUT_OF_INDEXES;
using EndModule = void() noexcept;
constinit EndModule* endModule = nullptr;

// Called by the system when a thread ends, and for every thread when the slot is freed.
void WINAPI forgetThread(void* state) {
    if (!states.giveBack(state))
        std::free(state);
}

// Without a slot, or when there is no memory to set it, a thread keeps one of the reserved states until the
// module is unloaded, and finds it by its number. A later thread of the same number goes on with it.
ExceptionState* stateOfThread() {
    if (void* const known = FlsGetValue(slot))
        return static_cast<ExceptionState*>(known);
    const DWORD thread = GetCurrentThreadId();
    if (ExceptionState* const kept =
            states.find([&](const ExceptionState& each) { return each.thread == thread; }))
        return kept;
    if (ExceptionState* const reserved = states.take()) {
        reserved->caught = nullptr;
        reserved->uncaught = 0;
        reserved->thread = FlsSetValue(slot, reserved) ? 0 : thread;
        return reserved;
    }
    auto* const made = static_cast<ExceptionState*>(std::calloc(1, sizeof(ExceptionState)));
    if (made == nullptr || !FlsSetValue(slot, made))
        endProcess(FAST_FAIL_FATAL_APP_EXIT);
    return made;
}

}  // namespace

void platform::atUnload(void (*end)() noexcept) {
    endModule = end;
}

extern "C" {

ExceptionState* __cxa_get_globals() {
    return stateOfThread();
}

ExceptionState* __cxa_get_globals_fast() {
    return stateOfThread();
}

void* __cxa_allocate_exception(std::size_t size) {
    void* block = std::malloc(kHeader + size);
    if (block == nullptr && size <= kLargestReserved)
        block = exceptions.take();
    if (block == nullptr)
        endProcess(FAST_FAIL_FATAL_APP_EXIT);
    std::memset(block, 0, kHeader);
    return static_cast<std::byte*>(block) + kHeader;
}

void __cxa_free_exception(void* object) {
    void* const block = static_cast<std::byte*>(object) - kHeader;
    if (!exceptions.giveBack(block))
        std::free(block);
}

// What the compiler's stack protector compares and calls. Its own library would ask a cryptographic provider,
// with all the modules that brings, while the loader is at work.
std::uintptr_t __stack_chk_guard;

[[noreturn]] void __stack_chk_fail() {
    endProcess(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE);
}

// Called before any function that is protected, and itself not, since it changes what would be compared.
[[gnu::noinline, gnu::no_stack_protector]] static void chooseGuard() {
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    // Its lowest byte, which comes first in memory, is 0: no text can be written over it and on.
    __stack_chk_guard = (reinterpret_cast<std::uintptr_t>(&now) ^ GetTickCount64() << 32 ^
                         static_cast<std::uintptr_t>(now.QuadPart) << 16 ^ GetCurrentThreadId() << 8) &
                        ~std::uintptr_t{0xFF};
}

// Nothing here is thread_local, so the image needs no directory for it.
extern const PIMAGE_TLS_CALLBACK __dyn_tls_init_callback;
const PIMAGE_TLS_CALLBACK __dyn_tls_init_callback = nullptr;

// The startup code calls this before DllMain when a process attaches, and after it when one detaches. At the
// end of the process nothing is taken down. Should a thread end while its slot is freed, the system's own
// lock around both is what keeps them apart.
BOOL WINAPI DllEntryPoint(HINSTANCE, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH) {
        chooseGuard();
        slot = FlsAlloc(forgetThread);  // when there is none left, the reserved states have to do
        return TRUE;
    }
    if (reason != DLL_PROCESS_DETACH || reserved != nullptr)
        return TRUE;
    if (endModule != nullptr)
        endModule();
    if (slot != FLS_OUT_OF_INDEXES) {
        FlsFree(slot);
        slot = FLS_OUT_OF_INDEXES;
    }
    return TRUE;
}

}  // extern "C"

namespace __gnu_cxx {

// The library's would print the name of the type, and bring the demangler and the formatter for it.
void __verbose_terminate_handler() {
    endProcess(FAST_FAIL_FATAL_APP_EXIT);
}

}  // namespace __gnu_cxx
