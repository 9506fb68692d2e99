// The few COM interfaces, structures and constants that a context-menu extension is made of: from the SDK on
// Windows, declared alike, slot for slot, on the host, so that the extension itself is one source.
#pragma once

#ifdef _WIN32
#include "platform/win32/com_api.h"
#else
#include "platform/host/com_api.h"
#include "platform/host/command_api.h"
#endif
