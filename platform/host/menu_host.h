// What the menu stand-in was asked for, and the facts that it answers.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/menu.h"

namespace platform::host {

struct Menu;

// One item as it was inserted, with the mask that was asked for.
struct RecordedItem {
    MenuItem request;  // `text` is empty here: see `text`
    std::u16string text;
    Menu* submenu = nullptr;
};

struct Menu {
    std::vector<RecordedItem> items;
};

// The recorded menu behind a reference.
Menu& menu(MenuRef reference);

// One call of loadBitmap that no injected fault stopped. Bitmaps are in every module that the module stand-in
// was told of (host/module_host.h) and in no other.
struct BitmapLoad {
    std::uint32_t id;
    int width;
    int height;
    std::uint32_t flags;
};

struct UserInterface {
    int smallIconHeight = 16;
    std::uint32_t menuColor = 0xF0F0F0;
    std::uint32_t windowColor = 0xFFFFFF;
    bool hasCursor = true;
    std::int32_t cursorX = 100;
    std::int32_t cursorY = 200;
    std::vector<BitmapLoad> loads;
    // Run once, while the next bitmap is being loaded: what another thread does meanwhile.
    std::function<void()> duringLoad;
    int liveMenus = 0;    // created and neither destroyed nor gone with a parent
    int liveBitmaps = 0;  // loaded and not deleted
};

UserInterface& userInterface();

// Back to the facts of the start; forgets the recorded loads and what is still live.
void resetMenus();

// The resource identifier that a live bitmap was loaded from; 0 for none.
std::uint32_t bitmapId(BitmapRef bitmap);

}  // namespace platform::host
