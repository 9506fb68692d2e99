// Any bytes as a drop block: every path that is whole is found and becomes text, one without its end is
// counted, and nothing outside the block is read.
#include <algorithm>
#include <memory>

#include "testing/drop_block.h"
#include "testing/fuzz.h"

using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Read from a copy that has exactly the block's size, for the sanitizer.
    const auto block = std::make_unique<char[]>(size);
    std::copy_n(data, size, block.get());
    const platform::DropPaths paths = platform::findDropPaths(block.get(), size);
    const platform::DropPaths slow = test::findSlowly(fuzz::view(data, size));
    require(paths.isWide == slow.isWide);
    require(paths.count == slow.count);
    require(paths.bytes == slow.bytes);
    if (!paths.bytes.empty()) {
        require(paths.bytes.data() >= block.get());
        require(paths.bytes.data() + paths.bytes.size() <= block.get() + size);
    }
    const platform::DropList list = platform::readDropBlock(block.get(), size, fuzz::widened);
    require(list.count == paths.count);
    require(list.paths == (paths.isWide ? fuzz::unitsOf(paths.bytes) : fuzz::widened(paths.bytes)));
    return 0;
}
