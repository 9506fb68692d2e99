// Processes, the tokens that say what they may do, and the pipes their output comes through.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/error.h"
#include "platform/handle.h"

namespace platform {

struct ProcessTraits {
    using Type = void*;
    static constexpr Type none() noexcept { return nullptr; }
    static void close(Type process) noexcept;
};
struct ThreadTraits {
    using Type = void*;
    static constexpr Type none() noexcept { return nullptr; }
    static void close(Type thread) noexcept;
};
struct TokenTraits {
    using Type = void*;
    static constexpr Type none() noexcept { return nullptr; }
    static void close(Type token) noexcept;
};
struct PipeTraits {
    using Type = void*;
    static constexpr Type none() noexcept { return nullptr; }
    static void close(Type end) noexcept;
};
using ProcessHandle = UniqueHandle<ProcessTraits>;
using ThreadHandle = UniqueHandle<ThreadTraits>;
using TokenHandle = UniqueHandle<TokenTraits>;
using PipeHandle = UniqueHandle<PipeTraits>;

// --- Tokens ---

inline constexpr std::uint32_t kTokenQuery = 0x8;
inline constexpr std::uint32_t kTokenAdjustPrivileges = 0x20;
inline constexpr std::uint32_t kPrivilegeEnabled = 0x2;
inline constexpr std::uint32_t kElevationTypeDefault = 1;
inline constexpr std::uint32_t kElevationTypeFull = 2;
inline constexpr std::uint32_t kElevationTypeLimited = 3;

// OpenProcessToken: the current process's token for the given access; no handle on failure.
TokenHandle openProcessToken(std::uint32_t access);

// GetTokenInformation(TokenElevationType) into a value of 4 bytes. On success `returnedLength` is the number
// of bytes that the system says it filled; on failure both results are unspecified.
Status tokenElevationType(const TokenHandle& token, std::uint32_t& type, std::uint32_t& returnedLength);

// LookupPrivilegeValueW on this machine: the number of the privilege of that name, such as
// "SeShutdownPrivilege".
Status lookupPrivilege(const char16_t* name, std::uint64_t& privilege);

// AdjustTokenPrivileges with one privilege. The answer is the last error after the call, which is not
// kSuccess either when the call succeeds but the token does not hold the privilege.
Status adjustTokenPrivilege(const TokenHandle& token, std::uint64_t privilege, std::uint32_t attributes);

inline constexpr std::uint32_t kExitLogOff = 0;
inline constexpr std::uint32_t kExitReboot = 2;
inline constexpr std::uint32_t kExitPowerOff = 8;
inline constexpr std::uint32_t kExitForceIfHung = 16;

// ExitWindowsEx. The host stand-in records the call and does nothing else.
Status exitWindows(std::uint32_t flags, std::uint32_t reason);

// --- Pipes ---

inline constexpr std::uint32_t kHandleFlagInherit = 0x1;

// CreatePipe with the default buffer size; with `inheritable` a child process inherits both ends.
Status createPipe(PipeHandle& readEnd, PipeHandle& writeEnd, bool inheritable);

// SetHandleInformation: sets the flags chosen by `mask` to their values in `flags`.
Status setHandleInformation(const PipeHandle& end, std::uint32_t mask, std::uint32_t flags);

// PeekNamedPipe: copies at most `size` bytes without removing them. `copied` is their number, `available` the
// number of bytes that wait in the pipe, the copied ones included. An empty pipe whose write end is open
// succeeds with 0, 0.
Status peekPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& copied,
                std::uint32_t& available);

// ReadFile: removes at most `size` bytes from the pipe; waits while the pipe is empty and somebody may still
// write.
Status readPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& count);

// --- Processes ---

inline constexpr std::uint32_t kWaitForever = 0xFFFFFFFF;
inline constexpr std::uint32_t kWaitSignaled = 0;
inline constexpr std::uint32_t kWaitTimeout = 258;
inline constexpr std::uint32_t kWaitFailed = 0xFFFFFFFF;
inline constexpr std::uint32_t kStillActive = 259;

// CreateProcessW with the caller's environment and folder and with STARTF_USESTDHANDLES: the child's standard
// output is `output`, its standard input and standard error are null handles. `commandLine` is the whole
// line, the program included. On failure both handles are left as they were.
Status createProcess(const std::u16string& program, const std::u16string& commandLine, bool inheritHandles,
                     std::uint32_t creationFlags, const PipeHandle& output, ProcessHandle& process,
                     ThreadHandle& thread);

// WaitForSingleObject on a process: kWaitSignaled when it has ended, kWaitTimeout, or kWaitFailed.
[[nodiscard]] std::uint32_t waitForProcess(const ProcessHandle& process, std::uint32_t milliseconds);

// GetExitCodeProcess; kStillActive for a process that has not ended.
Status exitCodeProcess(const ProcessHandle& process, std::uint32_t& code);

// GetEnvironmentVariableW: the variable's value, however long; nothing when there is no such variable.
[[nodiscard]] std::optional<std::u16string> environmentVariable(const char16_t* name);

}  // namespace platform
