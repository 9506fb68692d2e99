#include "platform/terminal.h"

#include <unistd.h>

#include "platform/host/fault.h"

namespace platform {

bool prepareTerminal() {
    return fault::next("GetConsoleMode") == kSuccess && isatty(STDOUT_FILENO) != 0 &&
           fault::next("SetConsoleMode") == kSuccess;
}

Utf8Output::Utf8Output() = default;
Utf8Output::~Utf8Output() = default;

}  // namespace platform
