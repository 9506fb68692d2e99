#include "platform/command_line.h"

#include <cstdio>

#include "platform/host/fault.h"
#include "platform/host/utf8.h"

namespace platform {
namespace {

// /proc/self/cmdline: every item, the program's name first, followed by a zero byte.
std::vector<std::u16string> allItems() {
    std::string bytes;
    if (std::FILE* file = std::fopen("/proc/self/cmdline", "rb")) {
        char buffer[4096];
        while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file))
            bytes.append(buffer, count);
        std::fclose(file);
    }
    std::vector<std::u16string> items;
    for (std::size_t end = 0; (end = bytes.find('\0')) != std::string::npos; bytes.erase(0, end + 1))
        items.push_back(fromHostName(bytes.substr(0, end)));
    return items;
}

}  // namespace

std::vector<std::u16string> commandLineItems() {
    if (fault::next("CommandLineToArgvW") != kSuccess)
        return {};
    std::vector<std::u16string> items = allItems();
    if (!items.empty())
        items.erase(items.begin());
    return items;
}

std::u16string commandLineText() {
    std::u16string text;
    for (const std::u16string& item : allItems())
        text += (text.empty() ? u"" : u" ") + item;
    return text;
}

}  // namespace platform
