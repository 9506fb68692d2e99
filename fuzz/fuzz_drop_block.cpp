// Any bytes as a drop block, and lists of paths laid into one at any offset and cut anywhere: every path that
// is whole is found and becomes text, one without its end is counted, and nothing outside the block is read.
#include <algorithm>
#include <memory>

#include "fuzz/fuzz.h"
#include "platform/drop_block.h"

using fuzz::require;

namespace {

// Read from a copy that has exactly the block's size, for the sanitizer.
platform::DropList read(const std::string& block, bool& isWide) {
    const auto copy = std::make_unique<char[]>(block.size());
    std::ranges::copy(block, copy.get());
    const platform::DropPaths paths = platform::findDropPaths(copy.get(), block.size());
    isWide = paths.isWide;
    if (!paths.bytes.empty()) {
        require(paths.bytes.data() >= copy.get());
        require(paths.bytes.data() + paths.bytes.size() <= copy.get() + block.size());
    }
    platform::DropList list = platform::readDropBlock(copy.get(), block.size(), fuzz::widened);
    require(list.count == paths.count);
    require(paths.bytes.size() % (isWide ? 2 : 1) == 0);
    require(list.paths == (isWide ? fuzz::unitsOf(paths.bytes) : fuzz::widened(paths.bytes)));
    return list;
}

void anyBlock(const std::string& block) {
    bool isWide = false;
    const platform::DropList list = read(block, isWide);
    require(list.count <= block.size());
    require(list.count - static_cast<std::size_t>(std::ranges::count(list.paths, u'\0')) <= 1);
    require(list.paths.empty() || (list.paths.front() != u'\0' && list.paths.back() == u'\0'));
    require(list.paths.find(std::u16string_view(u"\0\0", 2)) == list.paths.npos);
}

void madeBlock(FuzzedDataProvider& input) {
    const bool isWide = input.ConsumeBool();
    const std::size_t width = isWide ? 2 : 1;
    const std::size_t offset = 20 + fuzz::pick(input, 5);
    const std::size_t cut = fuzz::pick(input, 64);
    std::u16string list;
    while (input.remaining_bytes() > 0) {
        std::u16string path = fuzz::wide(input.ConsumeRandomLengthString(40));
        if (!isWide)
            std::ranges::for_each(path, [](char16_t& unit) { unit &= 0xFF; });
        std::erase(path, u'\0');
        if (!path.empty())
            (list += path) += u'\0';
    }
    std::string bytes;
    for (const char16_t unit : list + u'\0')
        bytes += fuzz::bytesOf(std::u16string(1, unit)).substr(0, width);
    bytes.resize(bytes.size() - std::min(cut, bytes.size()));
    std::string block(offset, '?');
    block.replace(0, 4, fuzz::bytesOf(std::u16string{static_cast<char16_t>(offset), 0}));
    block.replace(16, 4, fuzz::bytesOf(std::u16string{isWide, 0}));

    list.resize(std::min(bytes.size() / width, list.size()));
    const std::size_t whole = list.rfind(u'\0') + 1;
    bool isWideAgain = false;
    const platform::DropList found = read(block + bytes, isWideAgain);
    require(isWideAgain == isWide);
    require(found.paths == list.substr(0, whole));
    require(found.count == std::ranges::count(list, u'\0') + (whole < list.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    if (input.ConsumeBool())
        madeBlock(input);
    else
        anyBlock(input.ConsumeRemainingBytesAsString());
    return 0;
}
