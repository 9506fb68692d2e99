#include "platform/module.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <system_error>

#include "platform/host/fault.h"
#include "platform/host/module_host.h"
#include "platform/host/utf8.h"

namespace platform {
namespace {

struct Modules {
    std::map<ModuleRef, std::u16string> files;
};

Modules& modules() {
    static Modules instance;
    return instance;
}

}  // namespace

std::u16string moduleFileName(ModuleRef module) {
    if (fault::next("GetModuleFileNameW") != kSuccess)
        return {};
    const auto found = modules().files.find(module);
    if (found != modules().files.end())
        return found->second;
    std::error_code error;
    return module == nullptr ? fromHostName(std::filesystem::read_symlink("/proc/self/exe", error).native())
                             : std::u16string();
}

void atUnload(void (*end)() noexcept) {
    std::atexit(end);
}

namespace host {

void setModuleFileName(ModuleRef module, const std::u16string& path) {
    modules().files[module] = path;
}

bool hasModule(ModuleRef module) {
    return module != nullptr && modules().files.contains(module);
}

void resetModules() {
    modules() = Modules();
}

}  // namespace host

}  // namespace platform
