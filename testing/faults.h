// For tests over the stand-ins: a walk through the failures of the platform's calls.
#pragma once

#include <gtest/gtest.h>

#include <string_view>

#include "platform/host/fault.h"

namespace test {

// Runs `scenario` with the first, the second and so on of the calls of `operation` failing, until none is
// left: at least one must have failed. With `forGood` all later ones fail too.
template <class Scenario>
void walkFaults(std::string_view operation, platform::Status error, Scenario scenario, bool forGood = false) {
    std::uint32_t nth = 0;
    do {
        SCOPED_TRACE(testing::Message() << operation << ' ' << ++nth);
        platform::fault::arm(operation, nth, error, forGood);
        scenario();
    } while (platform::fault::fired());
    EXPECT_GT(nth, 1u) << operation;
    platform::fault::disarm();
}

// The same for the first call of each of these functions, of which each must come.
template <class Scenario>
void failEach(std::initializer_list<const char*> operations, platform::Status error, Scenario scenario,
              bool forGood = false) {
    for (const char* const operation : operations) {
        SCOPED_TRACE(operation);
        platform::fault::arm(operation, 1, error, forGood);
        scenario();
        EXPECT_TRUE(platform::fault::fired());
        platform::fault::disarm();
    }
}

}  // namespace test
