#include "foundation/process/captured_run.h"

#include <algorithm>

#include "foundation/path/path.h"
#include "foundation/text/text.h"
#include "platform/process.h"

namespace owlkit {
namespace {

constexpr std::uint32_t kSucceeded = 0;
constexpr std::uint32_t kFailed = 1;
constexpr std::uint32_t kChunkSize = 2048;  // bytes

std::u16string makeCommandLine(const std::u16string& program, const std::u16string& arguments) {
    const bool quote = program.find(u' ') != std::u16string::npos;
    std::u16string line = quote ? u"\"" + program + u"\"" : program;
    if (!arguments.empty())
        line += u" " + std::u16string(trim(arguments));
    return line;
}

bool runToEnd(const std::u16string& program, const std::u16string& arguments,
              const platform::PipeHandle& output) {
    platform::ProcessHandle process;
    platform::ThreadHandle thread;
    if (!platform::createProcess(program, makeCommandLine(program, arguments), true, 0, output, process,
                                 thread)
             .succeeded())
        return false;
    return platform::waitForProcess(process, platform::kWaitForever) == platform::kWaitSignaled;
}

// What the pipe holds. Its write end is still open here, so a plain read would wait at the end: hence the
// peeking.
std::string drain(const platform::PipeHandle& pipe) {
    std::string output;
    char chunk[kChunkSize];
    std::uint32_t count = 0;
    std::uint32_t available = 0;
    while (platform::peekPipe(pipe, chunk, kChunkSize, count, available).succeeded() && count != 0) {
        output.append(chunk, count);
        // A read that fails would leave the same bytes to be peeked at for ever.
        if (available == 0 ||
            !platform::readPipe(pipe, chunk, std::min(available, kChunkSize), count).succeeded())
            break;
    }
    return output;
}

}  // namespace

std::uint32_t runCaptured(const std::u16string& program, const std::u16string& arguments,
                          std::string& output) {
    if (pathType(program) != PathType::File)
        return kFailed;
    platform::PipeHandle readEnd;
    platform::PipeHandle writeEnd;
    if (!platform::createPipe(readEnd, writeEnd, true).succeeded() ||
        !platform::setHandleInformation(readEnd, platform::kHandleFlagInherit, 0).succeeded())
        return kFailed;
    // Read only after the end, as callers count on: output that overfills the pipe then waits for ever.
    if (!runToEnd(program, arguments, writeEnd))
        return kFailed;
    output = drain(readEnd);
    return kSucceeded;
}

}  // namespace owlkit
