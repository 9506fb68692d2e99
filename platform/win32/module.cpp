#include "platform/module.h"

#include "platform/win32/win32_api.h"

namespace platform {

std::u16string moduleFileName(ModuleRef module) {
    std::u16string path(MAX_PATH, u'\0');
    for (;;) {
        const DWORD size = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(module, wide(path.data()), size);
        if (length == 0)
            return {};
        if (length < size) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);  // a full buffer holds a cut path
    }
}

}  // namespace platform
