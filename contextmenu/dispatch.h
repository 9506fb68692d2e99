// What choosing an entry does.
#pragma once

#include <cstdint>
#include <string>

#include "contextmenu/application_launcher.h"
#include "contextmenu/selection.h"

namespace nmshell {

// Does what the entry with `offset` stands for: starts the application with `selection` as its row of the
// command table says, or opens a page of the web site. `owner` is the window that owns dialogs of the system
// (HWND). Whether the start succeeded is not reported. False for an offset that is none of ours; nothing is
// started then.
[[nodiscard]] bool dispatch(std::uint32_t offset, platform::WindowRef owner, const Selection& selection,
                            ApplicationLauncher& launcher);

// Whether the volume that holds the first path of `paths` is out of this process's reach, so that wiping it
// needs administrator rights. True as well when the path has no drive.
bool volumeIsClosed(const owlkit::PathList& paths);

// The address of `page` on the product's web site. Every "%(VID)" in it becomes the version identifier.
std::u16string pageAddress(std::u16string_view page);

// The first three numbers of a version text, one after the other: "403" for "4.0.3".
std::u16string versionIdentifier(std::u16string_view version);

}  // namespace nmshell
