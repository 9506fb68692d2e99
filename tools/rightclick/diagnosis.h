// Why the extension cannot be had.
#pragma once

#include <string>

#include "contextmenu/selection.h"

namespace rightclick {

// The first reason that the registry gives, as one line: the class for `kind` is not registered (asked only
// when `registered` is set), the extension is not approved or is switched off. Empty when all of that is in
// order.
std::string whyUnavailable(nmshell::SelectionKind kind, bool registered);

}  // namespace rightclick
