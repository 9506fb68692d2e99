#include "testing/failure_walk.h"

#include <cstdio>
#include <map>

#include "foundation/process/elevation.h"
#include "foundation/process/folders.h"

namespace test {
namespace {

using Kind = Failure::Kind;

std::string describe(const Failure& failure) {
    static constexpr const char* kKinds[] = {
        "nothing fails",  "call fails",       "call and all later ones fail",
        "for good fails", "allocation fails", "allocation and all later ones fail"};
    return failure.operation + " " + std::to_string(failure.nth) + ": " +
           kKinds[static_cast<int>(failure.kind)];
}

}  // namespace

void FailureWalkTest::beginWorld(const char16_t* file) {
    host::resetRegistry();
    approve();
    host::resetShell();
    for (const char16_t* const drive : {u"D:\\", u""})
        host::setRecycleBin(drive, host::RecycleBin{4096, 2});
    host::resetModules();
    host::setModuleFileName(host::moduleAt(this), folder() + file);
    host::tokenRecord() = {.elevationType = platform::kElevationTypeLimited};
    owlkit::forgetElevation();
    owlkit::recordApplicationFolder(u"");
}

void FailureWalkTest::begin() const {
    if (failure_.isOfMemory())
        failing_allocation::arm(failure_.nth, failure_.kind == Kind::EveryAllocation);
    else if (failure_.kind != Kind::Nothing)
        fault::arm(failure_.operation, failure_.nth, platform::kErrorAccessDenied,
                   failure_.kind != Kind::Call);
}

void FailureWalkTest::end() {
    failed_ = fails();
    failedOperation_ = fault::firedOperation();
    fault::disarm();
    failing_allocation::disarm();
}

bool FailureWalkTest::runWith(const Failure& failure, const std::function<void()>& scenario) {
    failure_ = failure;
    failing_allocation::arm(0);
    SCOPED_TRACE(describe(failure));
    scenario();
    return failed_;
}

void FailureWalkTest::walk(const char* name, const std::function<void()>& scenario, bool memory) {
    runWith({}, scenario);
    std::uint32_t calls = 0, callRuns = 0, allocations = 0, allocationRuns = 0;
    std::map<std::string, std::uint32_t> ordinals;
    while (!HasFailure() && runWith({Kind::Call, calls + 1}, scenario)) {
        ++calls;
        const std::string operation = failedOperation_;
        const std::uint32_t nth = ++ordinals[operation];
        callRuns += 1 + runWith({Kind::EveryCall, calls}, scenario);
        callRuns += runWith({Kind::Operation, nth, operation}, scenario);
    }
    while (memory && !HasFailure() && runWith({Kind::Allocation, allocations + 1}, scenario)) {
        ++allocations;
        allocationRuns += 1 + runWith({Kind::EveryAllocation, allocations}, scenario);
    }
    std::printf(
        "[   WALK   ] %s: %u platform calls, %u runs with failures among them; %u allocations, %u runs\n",
        name, calls, callRuns, allocations, allocationRuns);
    RecordProperty("platform_calls", static_cast<int>(calls));
    RecordProperty("platform_call_failures", static_cast<int>(callRuns));
    RecordProperty("allocations", static_cast<int>(allocations));
    RecordProperty("allocation_failures", static_cast<int>(allocationRuns));
}

}  // namespace test
