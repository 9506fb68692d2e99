// The registry contract's types as the calls want them.
#pragma once

#include <cstdint>

#include "platform/error.h"
#include "platform/win32/win32_api.h"

namespace platform {

// DWORD is unsigned long, which is 32 bits wide here but another type than std::uint32_t.
static_assert(sizeof(DWORD) == sizeof(std::uint32_t));

inline DWORD* dword(std::uint32_t* number) {
    return reinterpret_cast<DWORD*>(number);
}

inline Status status(LSTATUS code) {
    return Status{static_cast<std::uint32_t>(code)};
}

}  // namespace platform
