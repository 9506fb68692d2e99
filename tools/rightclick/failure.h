// How the client ends when something goes wrong.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/com.h"

namespace rightclick {

enum class ExitCode : int {
    Done = 0,
    WrongUsage = 2,
    MissingObject = 3,         // a file, folder, drive or DLL that was named is not there
    ExtensionUnavailable = 4,  // not registered, not approved or switched off
    PlatformFailure = 5,       // or the output cannot be written
    Refused = 6,               // the extension does not do what was picked, or has no such help text
};

// Ends the program with an exit code and one line of text (UTF-8).
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

// "0x80004005"
std::string hexadecimal(HRESULT result);

// A platform failure "MESSAGE (0x80004005)" unless `result` is a success.
void require(HRESULT result, const char* message);

}  // namespace rightclick
