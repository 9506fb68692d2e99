// Every stand-in at once.
#pragma once

#include "platform/host/com_host.h"
#include "platform/host/fault.h"
#include "platform/host/file_host.h"
#include "platform/host/locale_host.h"
#include "platform/host/menu_host.h"
#include "platform/host/module_host.h"
#include "platform/host/process_host.h"
#include "platform/host/registry_host.h"
#include "platform/host/shell_host.h"

namespace platform::host {

// Every stand-in back at its start, and no fault armed or counted. Inline: only who calls it links them all.
inline void resetAll() {
    fault::disarm();
    fault::resetCounts();
    resetCom();
    resetFiles();
    resetLocale();
    resetMenus();
    resetModules();
    resetProcesses();
    resetRegistry();
    resetShell();
}

}  // namespace platform::host
