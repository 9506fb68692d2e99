// What registering tells the shell, apart from what the registered module calls.
#include "platform/shell.h"
#include "platform/win32/win32_api.h"

#include <shlobj.h>

namespace platform {

void notifyAssociationsChanged() {
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}

}  // namespace platform
