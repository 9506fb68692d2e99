#include "platform/command_line.h"

#include "platform/handle.h"
#include "platform/win32/win32_api.h"

#include <shellapi.h>

namespace platform {
namespace {

struct ItemsTraits {
    using Type = wchar_t**;
    static constexpr Type none() { return nullptr; }
    static void close(Type items) noexcept { LocalFree(items); }
};

}  // namespace

std::vector<std::u16string> commandLineItems() {
    std::vector<std::u16string> result;
    int count = 0;
    const UniqueHandle<ItemsTraits> items(CommandLineToArgvW(GetCommandLineW(), &count));
    for (int i = 1; items && i < count; ++i)
        result.emplace_back(reinterpret_cast<const char16_t*>(items.get()[i]));
    return result;
}

std::u16string commandLineText() {
    return reinterpret_cast<const char16_t*>(GetCommandLineW());
}

}  // namespace platform
