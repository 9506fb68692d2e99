// Injected failures of memory, for test programs that link failing_allocation.cpp: it replaces the global
// operator new in the forms that the sources use. Every thread has its own.
#pragma once

#include <cstdint>

namespace test::failing_allocation {

// Makes the `nth` (1 = the next) of the allocations that count fail; with `forGood` every later one too.
void arm(std::uint32_t nth, bool forGood = false);

// Lets all succeed again.
void disarm();

// Whether one failed since arm().
bool fired();

// As long as it lives, allocations count, or with `on` off they do not; then it is as before.
class Counted {
  public:
    explicit Counted(bool on = true);
    ~Counted();
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

  private:
    bool before_;
};

}  // namespace test::failing_allocation
