// Any bytes as a drop block, and lists of paths laid into one at any offset and cut anywhere: every path that
// is whole is found and becomes text, one without its end is counted, and nothing outside the block is read.
#include <algorithm>
#include <cstring>
#include <memory>

#include "fuzz/fuzz.h"
#include "platform/drop_block.h"

using fuzz::require;

namespace {

constexpr std::size_t kHeader = 20;

std::size_t width(bool isWide) {
    return isWide ? 2 : 1;
}

std::u16string fromLatin1(std::string_view bytes) {
    std::u16string text;
    for (const char byte : bytes)
        text += static_cast<unsigned char>(byte);
    return text;
}

// What the bytes say, unit by unit.
std::u16string text(const platform::DropPaths& paths) {
    if (!paths.isWide)
        return fromLatin1(paths.bytes);
    std::u16string units;
    for (std::size_t i = 0; i < paths.bytes.size(); i += 2)
        units += static_cast<char16_t>(static_cast<unsigned char>(paths.bytes[i]) |
                                       static_cast<unsigned char>(paths.bytes[i + 1]) << 8);
    return units;
}

// A copy that has exactly the block's size, for the sanitizer.
platform::DropPaths find(const std::string& block, std::unique_ptr<char[]>& copy) {
    copy = std::make_unique<char[]>(block.size());
    std::memcpy(copy.get(), block.data(), block.size());
    return platform::findDropPaths(copy.get(), block.size());
}

void anyBlock(const std::string& block) {
    std::unique_ptr<char[]> copy;
    const platform::DropPaths paths = find(block, copy);
    if (!paths.bytes.empty()) {
        require(paths.bytes.data() >= copy.get());
        require(paths.bytes.data() + paths.bytes.size() <= copy.get() + block.size());
    }
    require(paths.count <= block.size());
    require(paths.bytes.size() % width(paths.isWide) == 0);
    const platform::DropList list = platform::readDropBlock(copy.get(), block.size(), fromLatin1);
    require(list.count == paths.count);
    require(list.paths == text(paths));
    const auto ended = static_cast<std::size_t>(std::ranges::count(list.paths, u'\0'));
    require(list.count - ended <= 1);
    require(list.paths.empty() || (list.paths.front() != u'\0' && list.paths.back() == u'\0'));
    require(list.paths.find(std::u16string_view(u"\0\0", 2)) == list.paths.npos);
}

std::string laidOut(const std::u16string& path, bool isWide) {
    std::string bytes;
    for (const char16_t unit : path) {
        bytes += static_cast<char>(unit);
        if (isWide)
            bytes += static_cast<char>(unit >> 8);
    }
    return bytes + std::string(width(isWide), '\0');
}

void madeBlock(FuzzedDataProvider& input) {
    const bool isWide = input.ConsumeBool();
    const auto gap = input.ConsumeIntegralInRange<std::uint32_t>(0, 5);
    const std::size_t cut = input.ConsumeIntegralInRange<std::size_t>(0, 64);
    const std::uint32_t offset = kHeader + gap;
    const std::uint32_t flag = isWide ? 1 : 0;
    std::string block(offset, '?');
    std::memcpy(block.data(), &offset, sizeof(offset));
    std::memcpy(block.data() + 16, &flag, sizeof(flag));
    std::vector<std::string> items;
    while (input.remaining_bytes() > 0) {
        std::u16string path = fuzz::wide(input.ConsumeRandomLengthString(40));
        if (!isWide)
            for (char16_t& unit : path)
                unit &= 0xFF;
        std::erase(path, u'\0');
        if (!path.empty())
            items.push_back(laidOut(path, isWide));
    }
    for (const std::string& item : items)
        block += item;
    block += std::string(width(isWide), '\0');
    block.resize(std::max<std::size_t>(block.size() - std::min(cut, block.size()), offset));

    std::string whole;
    std::uint32_t count = 0;
    for (const std::string& item : items) {
        const std::size_t left = block.size() - offset - whole.size();
        count += left >= width(isWide) ? 1 : 0;
        if (left < item.size())
            break;
        whole += item;
    }
    std::unique_ptr<char[]> copy;
    const platform::DropPaths paths = find(block, copy);
    require(paths.bytes == whole);
    require(paths.count == count);
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
