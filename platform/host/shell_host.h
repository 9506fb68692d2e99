// What the shell stand-in answers and what it was asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/shell.h"

namespace platform::host {

// One call of shellExecute or shellExecuteEx.
struct ShellStart {
    bool extended = false;  // shellExecuteEx
    std::u16string verb;
    std::u16string file;
    std::u16string parameters;
    bool hasFolder = false;
    std::int32_t show = 0;
    WindowRef owner = nullptr;
    std::uint32_t mask = 0;
};
// The calls since the last resetShell(), in order; those that an injected fault stopped are not among them.
std::vector<ShellStart>& shellStarts();

// The value of every later start: shellExecute returns it, shellExecuteEx succeeds when it is greater
// than 32. A failing start is recorded, but starts nothing.
void setShellExecuteResult(std::int64_t value);

// What shellExecuteEx gives back when a process handle is asked for: a process that has ended with
// `exitCode`, or no handle (as for documents that a running program opens). At first the exit code is 0.
void setShellProcess(std::optional<std::uint32_t> exitCode);

// From now on a successful start really runs the file, with the parameters split at blanks; a file that
// cannot be run makes the start fail with the value 2.
void startShellProgramsForReal(bool really);

// nullopt: the call fails. At first no folder and no Recycle Bin is known, and Windows lies in "C:\Windows".
struct RecycleBin {
    std::int64_t bytes = 0;
    std::int64_t items = 0;
};
void setFolderPath(int csidl, std::optional<std::u16string> folder);
void setRecycleBin(const std::u16string& root, std::optional<RecycleBin> bin);
void setWindowsDirectory(std::optional<std::u16string> folder);

// How often notifyAssociationsChanged was called.
int associationChanges();

// Back to the first answers; forgets the recorded starts.
void resetShell();

// A memory handle for readDropList(), of a block with these items, and its release. A list with an item that
// cannot be read is in the ANSI code page, where that can happen.
struct DropItem {
    std::u16string path;
    bool readable = true;
};
void* makeDropList(const std::vector<DropItem>& items);
void freeDropList(void* global);

}  // namespace platform::host
