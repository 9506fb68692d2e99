// A walk through every failure: a scenario runs again and again, each time with one more of its platform
// calls or allocations failing, until none is left.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "comserver/guard.h"
#include "testing/extension.h"
#include "testing/failing_allocation.h"

namespace test {

struct Failure {
    enum class Kind {
        Nothing,
        Call,             // the nth platform call
        EveryCall,        // and every later one
        Operation,        // the nth call of one function and every later one of it
        Allocation,       // the nth allocation
        EveryAllocation,  // and every later one
    };
    Kind kind = Kind::Nothing;
    std::uint32_t nth = 0;
    std::string operation = "*";  // the function, for Operation

    bool isOfMemory() const { return kind == Kind::Allocation || kind == Kind::EveryAllocation; }
};

// What came of choosing an entry.
struct Invocation {
    HRESULT result = E_FAIL;
    std::vector<host::ShellStart> starts;
    bool volumeFailed = false;  // as far as the walk made it fail
};

class FailureWalkTest : public HostTest {
  protected:
    // Runs `scenario` with every failure, and at first with none. It must begin with a world like that of the
    // run before, call begin() and end() around what it walks through, and check what came of it. Without
    // `memory` no allocation fails. Says how many failures there were.
    void walk(const char* name, const std::function<void()>& scenario, bool memory = true);

    // The world with which every run begins: an approved module of the name `file` in the current folder, a
    // user without administrator rights, and something in the Recycle Bins.
    void beginWorld(const char16_t* file);

    // Arms the failure of this run; takes it away again.
    void begin() const;
    void end();

    // What `work` answers; its allocations count. An exception that comes out of it is a failed test.
    template <class Work>
    static auto call(std::string_view name, Work work) -> decltype(work()) {
        try {
            const failing_allocation::Counted counted;
            return work();
        } catch (...) {
            ADD_FAILURE() << "an exception came out of " << name;
            return {};
        }
    }

    // The object that `work` gives; none when it is refused, for which there are two ways to say so.
    template <class Interface>
    Ref<Interface> obtain(const char* name, auto work) const {
        void* object = nullptr;
        const HRESULT result = call(name, [&] { return work(&object); });
        EXPECT_EQ(object != nullptr, result == S_OK) << name;
        const bool refused =
            result == CLASS_E_CLASSNOTAVAILABLE || (failure().isOfMemory() && result == E_OUTOFMEMORY);
        EXPECT_TRUE(result == S_OK || refused) << name << std::hex << result;
        return Ref<Interface>(static_cast<Interface*>(object));
    }

    // Chooses an entry by `work`.
    Invocation invoked(const char* name, auto work) {
        const bool failedBefore = fails();
        auto& starts = host::shellStarts();
        starts.clear();
        Invocation invocation;
        invocation.result = call(name, work);
        invocation.starts = starts;
        using enum Failure::Kind;
        const bool failsStill = failure().kind == EveryCall || failure().kind == Operation;
        const std::string operation = fault::firedOperation();
        invocation.volumeFailed =
            fails() && (failsStill || !failedBefore) &&
            (failure().kind == EveryCall || operation == "CreateFileW" || operation == "DeviceIoControl");
        return invocation;
    }

    const Failure& failure() const { return failure_; }

    // How many failures there have been so far in this run.
    static bool fails() { return fault::fired() || failing_allocation::fired(); }

    // The same for what DllMain does with the module, which turns exceptions into a refusal.
    static bool dllMain(auto work) {
        return call("DllMain", [&work] {
                   return nmshell::guard(E_FAIL, [&work] {
                       work();
                       return S_OK;
                   });
               }) == S_OK;
    }

    // After end(): whether anything failed, and which operation failed first.
    bool failed() const { return failed_; }
    const std::string& failedOperation() const { return failedOperation_; }

  private:
    // Whether the failure came to pass.
    bool runWith(const Failure& failure, const std::function<void()>& scenario);

    Failure failure_;
    bool failed_ = false;
    std::string failedOperation_;
};

}  // namespace test
