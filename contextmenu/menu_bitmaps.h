// The pictures of the menu.
#pragma once

#include <array>
#include <atomic>

#include "platform/menu.h"
#include "resources/resource.h"

namespace nmshell {

// The bitmaps of the module, each loaded on first use and kept for the life of the process. Of two threads
// that load the same one at the same moment both get the one that was there first: a menu may show it
// already.
class BitmapCache {
  public:
    static constexpr int kFirst = IDB_FIRST;
    static constexpr int kLast = IDB_LAST;

    // `module` is the module whose resources hold the bitmaps (HINSTANCE).
    explicit BitmapCache(platform::ModuleRef module = nullptr) : module_(module) {}
    BitmapCache(const BitmapCache&) = delete;
    BitmapCache& operator=(const BitmapCache&) = delete;
    ~BitmapCache() { clear(); }

    void setModule(platform::ModuleRef module) { module_ = module; }

    // The bitmap of a resource identifier at the size of a small icon; none outside kFirst..kLast or when it
    // cannot be loaded, which is tried again at the next call. The cache keeps the bitmap.
    platform::BitmapRef GetMenuBitmap(int id);

    // Deletes every bitmap.
    void clear();

  private:
    platform::ModuleRef module_;
    std::array<std::atomic<platform::BitmapRef>, kLast - kFirst + 1> bitmaps_ = {};  // owned
};

}  // namespace nmshell
