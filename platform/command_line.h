// The command line that this process was started with.
#pragma once

#include <string>
#include <vector>

namespace platform {

// The items without the program's name, split as CommandLineToArgvW splits them; on the host as the shell
// did.
std::vector<std::u16string> commandLineItems();

// The whole command line as it was given (GetCommandLineW); on the host the items with single spaces between.
std::u16string commandLineText();

}  // namespace platform
