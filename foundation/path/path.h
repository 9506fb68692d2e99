// What a path says by itself, and what lies there.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace owlkit {

// The folder of `path`, its trailing separator included; empty when it names none. Separators are
// platform::kPathSeparator and the slash.
std::u16string folderOf(std::u16string_view path);

// The folder with one platform::kPathSeparator at its end, added only when it ends in none; where that is the
// backslash, a final slash counts as one too. An empty folder, which means none, stays empty.
std::u16string withTrailingSeparator(std::u16string folder);

enum class PathType : std::uint32_t { Unreadable = 0, File = 1, Folder = 2 };

// What lies at `path`, from its attributes (GetFileAttributesW): a folder, a root included; a file, which is
// everything else; or nothing that could be asked.
PathType pathType(const std::u16string& path);

}  // namespace owlkit
