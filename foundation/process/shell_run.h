// Starting programs, documents and addresses through the shell.
#pragma once

#include <cstdint>
#include <string>

namespace owlkit {

// Starts `file` (a program, or a document by its default handler) with verb "open", its window shown normally
// and without error messages of the shell. Returns 0 when it started or, with `wait`, the exit code of the
// process when it ended, if there was a process; -1 when `file` is empty or nothing started. Promised
// surface, which the extension itself does not call.
[[nodiscard]] std::int32_t runShell(const std::u16string& file, const std::u16string& parameters, bool wait);

// What a target is. Any other value hands it to the shell as it is.
enum class OpenKind : std::uint32_t {
    FileOrUrl = 1,
    Mail = 2,
};

// Opens `target` with its default handler; true when the start succeeded, false without any start for an
// empty target. OpenKind::FileOrUrl: a target with "://" in it is started as it is; anything else must be the
// path of an existing file or folder and is started as "file://" and the trimmed path. OpenKind::Mail: a
// target that begins with the scheme "mailto:", in any letter case, is started as it is; any other scheme is
// refused; a target without a scheme is started as "mailto:" and the trimmed target.
[[nodiscard]] bool openWithShell(OpenKind kind, const std::u16string& target);

}  // namespace owlkit
