// The terminal that standard output may lead to.
#pragma once

namespace platform {

// Whether standard output is a terminal that understands escape sequences for underlining and dimming; where
// they have to be switched on, they are. GetConsoleMode, SetConsoleMode with
// ENABLE_VIRTUAL_TERMINAL_PROCESSING.
bool prepareTerminal();

}  // namespace platform
