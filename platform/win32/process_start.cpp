// Child processes. They stand apart from the rest of the service, like the rights do, so that a program is
// linked with what it calls alone.
#include "platform/process.h"

#include "platform/win32/win32_api.h"

namespace platform {

static_assert(kHandleFlagInherit == HANDLE_FLAG_INHERIT);
static_assert(kWaitForever == INFINITE);
static_assert(kWaitSignaled == WAIT_OBJECT_0);
static_assert(kWaitTimeout == WAIT_TIMEOUT);
static_assert(kWaitFailed == WAIT_FAILED);
static_assert(kStillActive == STILL_ACTIVE);

void ThreadTraits::close(Type thread) noexcept {
    CloseHandle(thread);
}

void PipeTraits::close(Type end) noexcept {
    CloseHandle(end);
}

Status createPipe(PipeHandle& readEnd, PipeHandle& writeEnd, bool inheritable) {
    SECURITY_ATTRIBUTES security = {sizeof(security), nullptr, inheritable};
    HANDLE readHandle = nullptr;
    HANDLE writeHandle = nullptr;
    if (!CreatePipe(&readHandle, &writeHandle, &security, 0))
        return lastError();
    readEnd.reset(readHandle);
    writeEnd.reset(writeHandle);
    return kSuccess;
}

Status setHandleInformation(const PipeHandle& end, std::uint32_t mask, std::uint32_t flags) {
    return outcome(SetHandleInformation(end.get(), mask, flags));
}

Status peekPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& copied,
                std::uint32_t& available) {
    DWORD read = 0;
    DWORD total = 0;
    const Status status = outcome(PeekNamedPipe(end.get(), buffer, size, &read, &total, nullptr));
    copied = read;
    available = total;
    return status;
}

Status readPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& count) {
    DWORD read = 0;
    const Status status = outcome(ReadFile(end.get(), buffer, size, &read, nullptr));
    count = read;
    return status;
}

Status createProcess(const std::u16string& program, const std::u16string& commandLine, bool inheritHandles,
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
        return lastError();
    process.reset(started.hProcess);
    thread.reset(started.hThread);
    return kSuccess;
}

std::uint32_t waitForProcess(const ProcessHandle& process, std::uint32_t milliseconds) {
    return WaitForSingleObject(process.get(), milliseconds);
}

Status exitCodeProcess(const ProcessHandle& process, std::uint32_t& code) {
    DWORD exitCode = 0;
    if (!GetExitCodeProcess(process.get(), &exitCode))
        return lastError();
    code = exitCode;
    return kSuccess;
}

}  // namespace platform
