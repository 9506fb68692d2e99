// The border between C++ and COM: nothing is thrown across it.
#pragma once

#include <new>
#include <utility>

#include "platform/com.h"

namespace nmshell {

// Runs `work`, which returns an HRESULT. An exception becomes E_FAIL; running out of memory becomes
// `outOfMemory`, which the methods that make objects report as E_OUTOFMEMORY and the others as E_FAIL.
template <class Work>
HRESULT guard(HRESULT outOfMemory, Work&& work) noexcept {
    try {
        return std::forward<Work>(work)();
    } catch (const std::bad_alloc&) {
        return outOfMemory;
    } catch (...) {
        return E_FAIL;
    }
}

}  // namespace nmshell
