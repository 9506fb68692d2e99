// The interfaces that the DLLs know, by number. The SDK's library has them in one piece with a thousand
// others.
#include "platform/com.h"

extern "C" {

constinit const IID IID_IUnknown = __uuidof(IUnknown);
constinit const IID IID_IClassFactory = __uuidof(IClassFactory);
constinit const IID IID_IShellExtInit = __uuidof(IShellExtInit);
constinit const IID IID_IContextMenu = __uuidof(IContextMenu);
constinit const IID IID_IExplorerCommand = __uuidof(IExplorerCommand);
constinit const IID IID_IEnumExplorerCommand = __uuidof(IEnumExplorerCommand);

}  // extern "C"
