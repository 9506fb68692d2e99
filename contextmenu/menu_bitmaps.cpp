#include "contextmenu/menu_bitmaps.h"

namespace nmshell {

platform::BitmapRef BitmapCache::GetMenuBitmap(int id) {
    if (id < kFirst || id > kLast)
        return nullptr;
    std::atomic<platform::BitmapRef>& cached = bitmaps_[static_cast<std::size_t>(id - kFirst)];
    if (const platform::BitmapRef there = cached)
        return there;
    const int side = platform::systemMetric(platform::kSmallIconHeight);
    std::uint32_t flags = platform::kLoadDefaultSize | platform::kLoadTransparent;
    if (platform::systemColor(platform::kColorWindow) != platform::systemColor(platform::kColorMenu))
        flags |= platform::kLoadMap3dColors;
    platform::BitmapHandle loaded =
        platform::loadBitmap(module_, static_cast<std::uint32_t>(id), side, side, flags);
    platform::BitmapRef there = nullptr;
    return cached.compare_exchange_strong(there, loaded.get()) ? loaded.release() : there;
}

void BitmapCache::clear() {
    for (std::atomic<platform::BitmapRef>& bitmap : bitmaps_)
        platform::BitmapHandle(bitmap.exchange(nullptr)).reset();
}

}  // namespace nmshell
