// The walk through every failure, and what may be otherwise after each.
#pragma once

#include "testing/failure_walk.h"
#include "tests/life_walk/answers.h"

namespace nmshell {

using test::Failure;

// What came of choosing an entry.
struct Invocation {
    HRESULT result = E_FAIL;
    std::vector<platform::host::ShellStart> starts;
    bool volumeFailed = false;
};

class LifeWalkTest : public test::FailureWalkTest {
  protected:
    Invocation invoked(const char* name, auto work) {
        const bool failedBefore = fails();
        auto& starts = platform::host::shellStarts();
        starts.clear();
        Invocation invocation;
        invocation.result = call(name, work);
        invocation.starts = starts;
        using enum Failure::Kind;
        const bool failsStill = failure().kind == EveryCall || failure().kind == Operation;
        const std::string operation = test::fault::firedOperation();
        invocation.volumeFailed =
            fails() && (failsStill || !failedBefore) &&
            (failure().kind == EveryCall || operation == "CreateFileW" || operation == "DeviceIoControl");
        return invocation;
    }

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
