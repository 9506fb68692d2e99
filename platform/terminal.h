// The terminal that standard output may lead to.
#pragma once

namespace platform {

// Whether standard output is a terminal that understands escape sequences for underlining and dimming; where
// they have to be switched on, they are. GetConsoleMode, SetConsoleMode with
// ENABLE_VIRTUAL_TERMINAL_PROCESSING.
bool prepareTerminal();

// While it lives, what a program prints is taken as UTF-8 and reaches files byte for byte, line feeds
// included. SetConsoleOutputCP and the binary mode of standard output; on the host there is nothing to do.
class Utf8Output {
  public:
    Utf8Output();
    ~Utf8Output();
    Utf8Output(const Utf8Output&) = delete;
    Utf8Output& operator=(const Utf8Output&) = delete;

  private:
    unsigned previousCodePage_ = 0;
};

}  // namespace platform
