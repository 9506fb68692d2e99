// What the process stand-in answers and what it was asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/process.h"

namespace platform::host {

// The answers and the record of the token and shutdown calls; assign a fresh one to start over with these
// alone.
struct TokenRecord {
    std::uint32_t elevationType = kElevationTypeDefault;  // what tokenElevationType answers
    std::uint32_t returnedLength = 4;

    struct Privilege {
        std::uint64_t privilege;
        std::uint32_t attributes;
    };
    struct Exit {
        std::uint32_t flags;
        std::uint32_t reason;
    };
    std::vector<std::uint32_t> opened = {};  // the access masks
    std::vector<Privilege> adjusted = {};
    std::vector<Exit> exits = {};
};
TokenRecord& tokenRecord();

// One successful call of createProcess.
struct ProcessStart {
    std::u16string program;
    std::u16string commandLine;
    bool inheritHandles = false;
    std::uint32_t creationFlags = 0;
};
std::vector<ProcessStart>& processStarts();

// The number of process, thread, token and pipe handles that are open, all together.
std::size_t openHandleCount();

// Back to the first answers; forgets what was asked for. Open handles stay open.
void resetProcesses();

// A process that has ended with `exitCode`.
ProcessHandle finishedProcess(std::uint32_t exitCode);

// Starts a program: `arguments` without the program itself; standard streams are those of this process. No
// handle on failure.
ProcessHandle startProgram(const std::u16string& program, const std::vector<std::u16string>& arguments);

}  // namespace platform::host
