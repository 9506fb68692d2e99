#include "platform/image.h"

#include <fstream>

#include "platform/host/fault.h"
#include "platform/host/utf8.h"

namespace platform {

namespace {

// A file that begins as programs and modules do stands for one that can be loaded.
Status startError(const std::u16string& file) {
    if (!file.starts_with(u'/'))
        return kErrorBadPathName;
    std::ifstream content(toHostName(file), std::ios::binary);
    char start[2] = {};
    if (!content)
        return kErrorFileNotFound;
    content.read(start, sizeof start);
    return start[0] == 'M' && start[1] == 'Z' ? kSuccess : kErrorBadExeFormat;
}

}  // namespace

Status loadError(const std::u16string& file) {
    const Status injected = fault::next("LoadLibraryExW");
    return injected != kSuccess ? injected : startError(file);
}

Status headerError(const std::u16string& file) {
    const Status injected = fault::next("LoadLibraryExW, as data");
    return injected != kSuccess ? injected : startError(file);
}

// No file of the host has a version, so there is nothing behind the first call.
std::u16string fileVersion(const std::u16string&) {
    static_cast<void>(fault::next("GetFileVersionInfoSizeW"));
    return {};
}

}  // namespace platform
