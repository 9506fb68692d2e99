// The walk through every failure, and what may be otherwise after each.
#pragma once

#include "testing/failure_walk.h"
#include "tests/life_walk/answers.h"

namespace nmshell {

using test::Failure;
using test::Invocation;

class LifeWalkTest : public test::FailureWalkTest {
  protected:
    // After end(): what may differ for what failed (bits of Difference).
    std::uint32_t mayDiffer() const {
        if (!failed())
            return 0;
        if (failure().isOfMemory())
            return mayDifferWithoutMemory();
        const bool any = failure().kind == Failure::Kind::EveryCall;
        return any ? mayDifferAfterAny() : mayDifferAfter(failedOperation());
    }
};

}  // namespace nmshell
