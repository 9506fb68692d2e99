// Everything platform/com.h promises comes from the SDK and the system's libraries; this file keeps the two
// sides alike and checks what the host side assumes about the structures.
#include "platform/com.h"

namespace platform {

static_assert(sizeof(MENUITEMINFOW) == 80);
static_assert(sizeof(HRESULT) == 4 && sizeof(ULONG) == 4);

}  // namespace platform
