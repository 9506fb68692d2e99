#include "platform/host/fault.h"

#include <map>
#include <mutex>
#include <string>

namespace platform::fault {
namespace {

struct State {
    std::string operation;
    std::uint32_t remaining = 0;  // calls until the fault fires; 0 = nothing armed
    Status error;
    bool forGood = false;
    std::string firedOperation;  // empty until it fires
    std::map<std::string, std::uint32_t, std::less<>> counts;
};

State& state() {
    static State instance;
    return instance;
}

// Stand-ins may be called on several threads.
std::mutex& guard() {
    static std::mutex instance;
    return instance;
}

bool matches(std::string_view pattern, std::string_view operation) {
    if (!pattern.empty() && pattern.back() == '*')
        return operation.substr(0, pattern.size() - 1) == pattern.substr(0, pattern.size() - 1);
    return pattern == operation;
}

}  // namespace

void arm(std::string_view operation, std::uint32_t nth, Status error, bool forGood) {
    const std::lock_guard lock(guard());
    State& s = state();
    s.operation = operation;
    s.remaining = nth;
    s.error = error;
    s.forGood = forGood;
    s.firedOperation.clear();
}

void disarm() {
    const std::lock_guard lock(guard());
    state().remaining = 0;
    state().firedOperation.clear();
}

bool fired() {
    const std::lock_guard lock(guard());
    return !state().firedOperation.empty();
}

std::string firedOperation() {
    const std::lock_guard lock(guard());
    return state().firedOperation;
}

Status next(std::string_view operation) {
    const std::lock_guard lock(guard());
    State& s = state();
    const auto counted = s.counts.find(operation);
    if (counted != s.counts.end())
        ++counted->second;
    else
        s.counts.emplace(operation, 1);
    if (s.remaining == 0 || !matches(s.operation, operation))
        return kSuccess;
    if (s.remaining > 1) {
        --s.remaining;
        return kSuccess;
    }
    if (!s.forGood)
        s.remaining = 0;
    if (s.firedOperation.empty())
        s.firedOperation = operation;
    return s.error;
}

std::uint32_t calls(std::string_view operation) {
    const std::lock_guard lock(guard());
    std::uint32_t sum = 0;
    for (const auto& [name, count] : state().counts)
        if (matches(operation, name))
            sum += count;
    return sum;
}

void resetCounts() {
    const std::lock_guard lock(guard());
    state().counts.clear();
}

}  // namespace platform::fault
