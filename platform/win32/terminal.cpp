#include "platform/terminal.h"

#include "platform/win32/win32_api.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>

namespace platform {

bool prepareTerminal() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) && SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

Utf8Output::Utf8Output() : previousCodePage_(GetConsoleOutputCP()) {
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
}

Utf8Output::~Utf8Output() {
    if (previousCodePage_ != 0)
        SetConsoleOutputCP(previousCodePage_);
}

}  // namespace platform
