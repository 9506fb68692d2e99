// Injected failures for the host stand-ins. Every stand-in for a call that can fail on Windows asks, before
// it does or records anything, whether this call is to fail; it then answers as the call does when it fails,
// with the given error where there is one, and changes nothing. Closing a handle, telling the shell of a
// change, reading a color or the command line, the number of a drive and the code page of the console cannot
// be seen to fail and do not ask; neither do the tests' own controls. Where a stand-in stands for several
// calls in a row, it asks for each when its turn comes; growing a buffer until a text fits counts as one.
// readFile and writeFile ask twice, the second time for "ReadFile, short" and "WriteFile, short": a transfer
// that this makes fail succeeds with half of its bytes. headerError asks for "LoadLibraryExW, as data".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/error.h"

namespace platform::fault {

// Makes the `nth` call (1 = the next one) of `operation` fail with `error`; with `forGood` every later one
// too. `operation` is the name of the Windows function that the stand-in stands for, such as "RegOpenKeyExW";
// a final "*" matches every operation that begins with the text before it ("Reg*", or "*" for all), counted
// together. One fault is armed at a time; arming another one replaces it.
void arm(std::string_view operation, std::uint32_t nth, Status error, bool forGood = false);

// Takes the armed fault away and forgets that it fired.
void disarm();

// Whether the armed fault has made a call fail since it was armed, and which operation failed first; empty
// when none did.
bool fired();
std::string firedOperation();

// Asked by the stand-ins: the error this call of `operation` must fail with, or kSuccess to go on.
Status next(std::string_view operation);

// How often `next` was asked for `operation` (same matching) since the last resetCounts(): counts platform
// calls.
std::uint32_t calls(std::string_view operation);
void resetCounts();

}  // namespace platform::fault
