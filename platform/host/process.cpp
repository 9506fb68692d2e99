#include "platform/process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <string_view>

#include "platform/host/fault.h"
#include "platform/host/process_host.h"
#include "platform/host/utf8.h"

namespace platform {
namespace {

constexpr std::uint64_t kShutdownPrivilege = 19;

struct Process {
    pid_t pid;
    bool ended;
    std::uint32_t exitCode;
};
struct Thread {};
struct Token {
    std::uint32_t access;
};
struct PipeEnd {
    int descriptor;
    std::string peeked;  // taken out of the pipe by a peek and not read yet
};

std::atomic<std::size_t> handleCount = 0;

template <class Object>
void* open(Object object) {
    void* handle = new Object(std::move(object));
    ++handleCount;
    return handle;
}

template <class Object, class Handle>
Object* object(const Handle& handle) {
    return static_cast<Object*>(handle.get());
}

template <class Object>
void destroy(void* handle) {
    delete static_cast<Object*>(handle);
    --handleCount;
}

// The fault for `operation`, or the error of a handle that holds nothing.
template <class Handle>
Status enter(const char* operation, const Handle& handle) {
    const Status error = fault::next(operation);
    return error != kSuccess || handle ? error : kErrorInvalidHandle;
}

// Takes note of the end of a process; with `block` it waits for it.
void collect(Process& process, bool block) {
    int status = 0;
    pid_t pid = 0;
    while (!process.ended && (pid = waitpid(process.pid, &status, block ? 0 : WNOHANG)) < 0 &&
           errno == EINTR) {
    }
    if (process.ended || pid == 0)
        return;
    process.ended = true;
    process.exitCode =
        static_cast<std::uint32_t>(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
}

// The items of a command line: parted by blanks, which a pair of quotation marks protects.
std::vector<std::string> splitCommandLine(const std::u16string& commandLine) {
    std::vector<std::string> items;
    bool quoted = false;
    bool inItem = false;
    for (const char c : toHostName(commandLine)) {
        if (c == ' ' && !quoted) {
            inItem = false;
            continue;
        }
        if (!inItem)
            items.emplace_back();
        inItem = true;
        if (c == '"')
            quoted = !quoted;
        else
            items.back() += c;
    }
    return items;
}

// Starts `program`; `actions` prepare its standard streams.
ProcessHandle spawn(const std::u16string& program, std::vector<std::string> items,
                    const posix_spawn_file_actions_t* actions) {
    std::vector<char*> pointers;
    for (std::string& item : items)
        pointers.push_back(item.data());
    pointers.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawn(&pid, toHostName(program).c_str(), actions, nullptr, pointers.data(), environ) != 0)
        return {};
    return ProcessHandle(open(Process{pid, false, 0}));
}

}  // namespace

void ProcessTraits::close(Type process) noexcept {
    collect(*static_cast<Process*>(process), false);
    destroy<Process>(process);
}

void ThreadTraits::close(Type thread) noexcept {
    destroy<Thread>(thread);
}

void TokenTraits::close(Type token) noexcept {
    destroy<Token>(token);
}

void PipeTraits::close(Type end) noexcept {
    ::close(static_cast<PipeEnd*>(end)->descriptor);
    destroy<PipeEnd>(end);
}

TokenHandle openProcessToken(std::uint32_t access) {
    if (fault::next("OpenProcessToken") != kSuccess)
        return {};
    {
        static std::mutex guard;
        const std::lock_guard lock(guard);
        host::tokenRecord().opened.push_back(access);
    }
    return TokenHandle(open(Token{access}));
}

Status tokenElevationType(const TokenHandle& token, std::uint32_t& type, std::uint32_t& returnedLength) {
    if (const Status error = enter("GetTokenInformation", token); !error.succeeded())
        return error;
    if (!(object<Token>(token)->access & kTokenQuery))
        return kErrorAccessDenied;
    type = host::tokenRecord().elevationType;
    returnedLength = host::tokenRecord().returnedLength;
    return kSuccess;
}

Status lookupPrivilege(const char16_t* name, std::uint64_t& privilege) {
    if (const Status error = fault::next("LookupPrivilegeValueW"); !error.succeeded())
        return error;
    if (std::u16string_view(name) != u"SeShutdownPrivilege")
        return kErrorNoSuchPrivilege;
    privilege = kShutdownPrivilege;
    return kSuccess;
}

Status adjustTokenPrivilege(const TokenHandle& token, std::uint64_t privilege, std::uint32_t attributes) {
    if (const Status error = enter("AdjustTokenPrivileges", token); !error.succeeded())
        return error;
    if (!(object<Token>(token)->access & kTokenAdjustPrivileges))
        return kErrorAccessDenied;
    host::tokenRecord().adjusted.push_back({privilege, attributes});
    return kSuccess;
}

Status exitWindows(std::uint32_t flags, std::uint32_t reason) {
    if (const Status error = fault::next("ExitWindowsEx"); !error.succeeded())
        return error;
    host::tokenRecord().exits.push_back({flags, reason});
    return kSuccess;
}

Status createPipe(PipeHandle& readEnd, PipeHandle& writeEnd, bool inheritable) {
    if (const Status error = fault::next("CreatePipe"); !error.succeeded())
        return error;
    int ends[2];
    if (pipe2(ends, inheritable ? 0 : O_CLOEXEC) != 0)
        return kErrorNotEnoughMemory;
    readEnd.reset(open(PipeEnd{ends[0], {}}));
    writeEnd.reset(open(PipeEnd{ends[1], {}}));
    return kSuccess;
}

Status setHandleInformation(const PipeHandle& end, std::uint32_t mask, std::uint32_t flags) {
    if (const Status error = enter("SetHandleInformation", end); !error.succeeded())
        return error;
    const int closeInChild = flags & kHandleFlagInherit ? 0 : FD_CLOEXEC;
    const bool done =
        !(mask & kHandleFlagInherit) || fcntl(object<PipeEnd>(end)->descriptor, F_SETFD, closeInChild) == 0;
    return done ? kSuccess : kErrorInvalidHandle;
}

Status peekPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& copied,
                std::uint32_t& available) {
    if (const Status error = enter("PeekNamedPipe", end); !error.succeeded())
        return error;
    PipeEnd& pipe = *object<PipeEnd>(end);
    int waiting = 0;
    if (ioctl(pipe.descriptor, FIONREAD, &waiting) != 0)
        return kErrorInvalidHandle;
    const std::size_t total = pipe.peeked.size() + static_cast<std::size_t>(waiting);
    const std::size_t count = std::min<std::size_t>(total, size);
    // A pipe cannot be looked into here, so the bytes are taken out and kept for the next read.
    if (count > pipe.peeked.size()) {
        const std::size_t filled = pipe.peeked.size();
        pipe.peeked.resize(count);
        const ssize_t taken = ::read(pipe.descriptor, pipe.peeked.data() + filled, count - filled);
        pipe.peeked.resize(filled + static_cast<std::size_t>(std::max<ssize_t>(taken, 0)));
        if (pipe.peeked.size() != count)
            return kErrorBrokenPipe;
    }
    pollfd state = {pipe.descriptor, POLLIN, 0};
    if (total == 0 && poll(&state, 1, 0) > 0 && !(state.revents & POLLIN))
        return kErrorBrokenPipe;  // empty, and nobody can write any more
    pipe.peeked.copy(static_cast<char*>(buffer), count);
    copied = static_cast<std::uint32_t>(count);
    available = static_cast<std::uint32_t>(total);
    return kSuccess;
}

Status readPipe(const PipeHandle& end, void* buffer, std::uint32_t size, std::uint32_t& count) {
    if (const Status error = enter("ReadFile", end); !error.succeeded())
        return error;
    PipeEnd& pipe = *object<PipeEnd>(end);
    char* target = static_cast<char*>(buffer);
    const std::size_t kept = pipe.peeked.copy(target, size);
    pipe.peeked.erase(0, kept);
    count = static_cast<std::uint32_t>(kept);
    int waiting = 0;
    if (kept == size || (kept > 0 && (ioctl(pipe.descriptor, FIONREAD, &waiting) != 0 || waiting == 0)))
        return kSuccess;
    const ssize_t taken = ::read(pipe.descriptor, target + kept, size - kept);
    count += static_cast<std::uint32_t>(std::max<ssize_t>(taken, 0));
    return taken > 0 || kept > 0 ? kSuccess : kErrorBrokenPipe;
}

Status createProcess(const std::u16string& program, const std::u16string& commandLine, bool inheritHandles,
                     std::uint32_t creationFlags, const PipeHandle& output, ProcessHandle& process,
                     ThreadHandle& thread) {
    if (const Status error = fault::next("CreateProcessW"); !error.succeeded())
        return error;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    // A program whose standard streams are closed would take its own files for them, so "none" is the null
    // device.
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_RDWR, 0);
    if (output && inheritHandles)
        posix_spawn_file_actions_adddup2(&actions, object<PipeEnd>(output)->descriptor, STDOUT_FILENO);
    else
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_RDWR, 0);
    ProcessHandle started = spawn(program, splitCommandLine(commandLine), &actions);
    posix_spawn_file_actions_destroy(&actions);
    if (!started)
        return kErrorFileNotFound;
    host::processStarts().push_back({program, commandLine, inheritHandles, creationFlags});
    process = std::move(started);
    thread.reset(open(Thread{}));
    return kSuccess;
}

std::uint32_t waitForProcess(const ProcessHandle& process, std::uint32_t milliseconds) {
    if (fault::next("WaitForSingleObject") != kSuccess || !process)
        return kWaitFailed;
    Process& waited = *object<Process>(process);
    collect(waited, milliseconds == kWaitForever);
    for (; !waited.ended && milliseconds > 0; --milliseconds) {
        usleep(1000);
        collect(waited, false);
    }
    return waited.ended ? kWaitSignaled : kWaitTimeout;
}

Status exitCodeProcess(const ProcessHandle& process, std::uint32_t& code) {
    if (const Status error = enter("GetExitCodeProcess", process); !error.succeeded())
        return error;
    Process& asked = *object<Process>(process);
    collect(asked, false);
    code = asked.ended ? asked.exitCode : kStillActive;
    return kSuccess;
}

std::optional<std::u16string> environmentVariable(const char16_t* name) {
    if (fault::next("GetEnvironmentVariableW") != kSuccess)
        return std::nullopt;
    const char* value = std::getenv(toHostName(name).c_str());
    return value != nullptr ? std::optional(fromHostName(value)) : std::nullopt;
}

namespace host {

TokenRecord& tokenRecord() {
    static TokenRecord instance;
    return instance;
}

std::vector<ProcessStart>& processStarts() {
    static std::vector<ProcessStart> instance;
    return instance;
}

std::size_t openHandleCount() {
    return handleCount;
}

void resetProcesses() {
    tokenRecord() = {};
    processStarts().clear();
}

ProcessHandle finishedProcess(std::uint32_t exitCode) {
    return ProcessHandle(open(Process{0, true, exitCode}));
}

ProcessHandle startProgram(const std::u16string& program, const std::vector<std::u16string>& arguments) {
    std::vector<std::string> items = {toHostName(program)};
    for (const std::u16string& argument : arguments)
        items.push_back(toHostName(argument));
    return spawn(program, std::move(items), nullptr);
}

}  // namespace host

}  // namespace platform
