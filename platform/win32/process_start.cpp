// Child processes. They stand apart from the rest of the service, like the rights do, so that a program is
// linked with what it calls alone.
#include "platform/process.h"

#include "platform/win32/win32_api.h"

namespace platform {

void ThreadTraits::close(Type thread) noexcept {
    CloseHandle(thread);
}

void PipeTraits::close(Type end) noexcept {
    CloseHandle(end);
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

}  // namespace platform
