// Calls of the loaded module that are counted, or fail.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/win32/win32_api.h"

namespace dll_tests {

// The calls of the loaded module that are led here: the n-th of the kind that was asked for fails.
struct Faults {
    const char* name = "";
    int countdown = 0;
    bool forGood = false;
    bool fired = false;
    bool noSlots = false;  // for the states of threads
    int thrown = 0;
    int freed = 0;
    int launches = 0;
    std::u16string start;  // the last one: verb, file and parameters, parted by bars

    void arm(const char* call, int n, bool each) {
        name = call;
        countdown = n;
        forGood = each;
        fired = false;
    }
    void disarm() { name = "", noSlots = false; }
    bool next(const char* call) {
        if (noSlots && std::string_view(call).starts_with("Fls"))
            return true;
        if (name != std::string_view(call) || (fired ? !forGood : --countdown != 0))
            return false;
        return fired = true;
    }
};
extern Faults faults;

// Leads what is counted, and what must not really be done, to functions of this program.
void observe(HMODULE module);

// Leads the calls that `faults` can make fail.
void makeCallsFailing(HMODULE module);

struct FailingCall {
    const char* name;
    void (*lead)(HMODULE module);
};
extern const std::span<const FailingCall> failingCalls;

}  // namespace dll_tests
