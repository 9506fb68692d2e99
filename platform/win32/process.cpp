#include "platform/process.h"

#include "platform/win32/win32_api.h"

namespace platform {

void ProcessTraits::close(Type process) noexcept {
    CloseHandle(process);
}

void ThreadTraits::close(Type thread) noexcept {
    CloseHandle(thread);
}

void TokenTraits::close(Type token) noexcept {
    CloseHandle(token);
}

void PipeTraits::close(Type end) noexcept {
    CloseHandle(end);
}

TokenHandle openProcessToken(std::uint32_t access) {
    HANDLE token = nullptr;
    return TokenHandle(OpenProcessToken(GetCurrentProcess(), access, &token) ? token : nullptr);
}

bool tokenElevationType(const TokenHandle& token, std::uint32_t& type, std::uint32_t& returnedLength) {
    static_assert(sizeof(TOKEN_ELEVATION_TYPE) == sizeof(type));
    DWORD length = 0;
    const BOOL done = GetTokenInformation(token.get(), TokenElevationType, &type, sizeof(type), &length);
    returnedLength = length;
    return done != FALSE;
}

bool lookupPrivilege(const char16_t* name, std::uint64_t& privilege) {
    LUID luid = {};
    if (!LookupPrivilegeValueW(nullptr, wide(name), &luid))
        return false;
    privilege = static_cast<std::uint64_t>(static_cast<std::uint32_t>(luid.HighPart)) << 32 | luid.LowPart;
    return true;
}

ErrorCode adjustTokenPrivilege(const TokenHandle& token, std::uint64_t privilege, std::uint32_t attributes) {
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Luid.LowPart = static_cast<DWORD>(privilege);
    privileges.Privileges[0].Luid.HighPart = static_cast<LONG>(privilege >> 32);
    privileges.Privileges[0].Attributes = attributes;
    SetLastError(ERROR_SUCCESS);
    if (!AdjustTokenPrivileges(token.get(), FALSE, &privileges, 0, nullptr, nullptr))
        return lastError();
    return GetLastError();  // it succeeds, with a code, where the token lacks the privilege
}

bool exitWindows(std::uint32_t flags, std::uint32_t reason) {
    return ExitWindowsEx(flags, reason) != FALSE;
}

bool createPipe(PipeHandle& readEnd, PipeHandle& writeEnd, bool inheritable) {
    SECURITY_ATTRIBUTES security = {sizeof(security), nullptr, inheritable};
    HANDLE readHandle = nullptr;
    HANDLE writeHandle = nullptr;
    if (!CreatePipe(&readHandle, &writeHandle, &security, 0))
        return false;
    readEnd.reset(readHandle);
    writeEnd.reset(writeHandle);
    return true;
}

bool setHandleInformation(const PipeHandle& end, std::uint32_t mask, std::uint32_t flags) {
    return SetHandleInformation(end.get(), mask, flags) != FALSE;
}

bool peekPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& copied,
              std::uint32_t& available) {
    DWORD read = 0;
    DWORD total = 0;
    const BOOL done = PeekNamedPipe(end.get(), buffer, size, &read, &total, nullptr);
    copied = read;
    available = total;
    return done != FALSE;
}

bool readPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& count) {
    DWORD read = 0;
    const BOOL done = ReadFile(end.get(), buffer, size, &read, nullptr);
    count = read;
    return done != FALSE;
}

bool createProcess(const std::u16string& program, const std::u16string& commandLine, bool inheritHandles,
                   std::uint32_t creationFlags, const PipeHandle& output, ProcessHandle& process,
                   ThreadHandle& thread) {
    std::u16string line = commandLine;  // the call may write into its command line
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.get();
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(wide(program), wide(line.data()), nullptr, nullptr, inheritHandles, creationFlags,
                        nullptr, nullptr, &startup, &started))
        return false;
    process.reset(started.hProcess);
    thread.reset(started.hThread);
    return true;
}

std::uint32_t waitForProcess(const ProcessHandle& process, std::uint32_t milliseconds) {
    return WaitForSingleObject(process.get(), milliseconds);
}

bool exitCodeProcess(const ProcessHandle& process, std::uint32_t& code) {
    DWORD exitCode = 0;
    if (!GetExitCodeProcess(process.get(), &exitCode))
        return false;
    code = exitCode;
    return true;
}

std::optional<std::u16string> environmentVariable(const char16_t* name) {
    std::u16string value(256, u'\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD size = static_cast<DWORD>(value.size());
        const DWORD length = GetEnvironmentVariableW(wide(name), wide(value.data()), size);
        if (length == 0 && GetLastError() != ERROR_SUCCESS)  // a variable may well be empty
            return std::nullopt;
        value.resize(length);
        if (length < size)
            return value;
    }
}

}  // namespace platform
