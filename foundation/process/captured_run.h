// Running a console program for what it prints: promised surface, which the extension itself does not call.
#pragma once

#include <cstdint>
#include <string>

namespace owlkit {

// Starts `program` with `arguments`, waits without a time limit until it has ended and sets `output` to the
// bytes that it wrote to its standard output; it has no standard input and no standard error. Returns 0 on
// success and then also when the program itself failed; 1, with `output` as it was, when `program` is not an
// existing file, the pipe cannot be made, the program does not start or waiting for it fails. A pipe that
// cannot be read to its end is a success with what came before. For programs with short output only: one that
// writes more than a pipe holds never ends, since its output is read when it has ended.
[[nodiscard]] std::uint32_t runCaptured(const std::u16string& program, const std::u16string& arguments,
                                        std::string& output);

}  // namespace owlkit
