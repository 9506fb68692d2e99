// Loading other modules, which the module that the shell loads never does.
#include "platform/module.h"
#include "platform/win32/win32_api.h"

namespace platform {

bool canLoadModule(const std::u16string& file) {
    const HMODULE module = LoadLibraryW(wide(file));
    if (module)
        FreeLibrary(module);
    return module != nullptr;
}

}  // namespace platform
