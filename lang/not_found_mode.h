// What a look-up in language files gives when there is no text.
#pragma once

#include <cstdint>

namespace owlkit {

// What Find does when a key has no text in the language asked for.
enum class NotFoundMode : std::uint32_t {
    UsePrimary = 0,  // looks in the primary language, then gives the key itself
    GiveKey = 1,
    GiveNothing = 2,  // gives an empty text
    Throw = 3,        // std::runtime_error "interlang translation not found for key 'KEY'"
};

}  // namespace owlkit
