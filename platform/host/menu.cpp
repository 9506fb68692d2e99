#include "platform/menu.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "platform/host/fault.h"
#include "platform/host/menu_host.h"
#include "platform/host/module_host.h"

namespace platform {
namespace {

struct Bitmap {
    std::uint32_t id;
};

// Held while what userInterface() counts and records changes.
std::mutex& guard() {
    static std::mutex instance;
    return instance;
}

void count(int& live, int change) {
    const std::lock_guard lock(guard());
    live += change;
}

}  // namespace

namespace host {

Menu& menu(MenuRef reference) {
    return *reinterpret_cast<Menu*>(reference);
}

UserInterface& userInterface() {
    static UserInterface instance;
    return instance;
}

void resetMenus() {
    userInterface() = {};
}

std::uint32_t bitmapId(BitmapRef bitmap) {
    return bitmap ? reinterpret_cast<Bitmap*>(bitmap)->id : 0;
}

}  // namespace host

void MenuTraits::close(Type menu) noexcept {
    for (const host::RecordedItem& item : host::menu(menu).items)
        if (item.submenu)
            close(item.request.submenu);
    delete &host::menu(menu);
    count(host::userInterface().liveMenus, -1);
}

void BitmapTraits::close(Type bitmap) noexcept {
    delete reinterpret_cast<Bitmap*>(bitmap);
    count(host::userInterface().liveBitmaps, -1);
}

MenuHandle createMenu() {
    if (fault::next("CreateMenu") != kSuccess)
        return {};
    MenuHandle created(reinterpret_cast<MenuRef>(new host::Menu));
    count(host::userInterface().liveMenus, 1);
    return created;
}

Status insertMenuItem(MenuRef menu, std::uint32_t position, const MenuItem& item) {
    if (const Status error = fault::next("InsertMenuItemW"); !error.succeeded())
        return error;
    if (!menu)
        return kErrorInvalidMenuHandle;
    auto& items = host::menu(menu).items;
    host::RecordedItem recorded{item, {}, nullptr};
    recorded.request.text = {};
    if (item.hasText)
        recorded.text = item.text;
    if (item.mask & kItemSubmenu)
        recorded.submenu = &host::menu(item.submenu);
    const std::size_t at = std::min<std::size_t>(position, items.size());
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(at), std::move(recorded));
    return kSuccess;
}

BitmapHandle loadBitmap(ModuleRef module, std::uint32_t id, int width, int height, std::uint32_t flags) {
    if (fault::next("LoadImageW") != kSuccess)
        return {};
    host::UserInterface& ui = host::userInterface();
    {
        const std::lock_guard lock(guard());
        ui.loads.push_back({id, width, height, flags});
    }
    if (!host::hasModule(module))
        return {};
    if (ui.duringLoad)
        std::exchange(ui.duringLoad, nullptr)();
    BitmapHandle loaded(reinterpret_cast<BitmapRef>(new Bitmap{id}));
    count(ui.liveBitmaps, 1);
    return loaded;
}

int systemMetric(int index) {
    return fault::next("GetSystemMetrics") == kSuccess && index == kSmallIconHeight
               ? host::userInterface().smallIconHeight
               : 0;
}

std::uint32_t systemColor(int index) {
    const host::UserInterface& ui = host::userInterface();
    return index == kColorMenu ? ui.menuColor : index == kColorWindow ? ui.windowColor : 0;
}

Status cursorPosition(std::int32_t& x, std::int32_t& y) {
    if (const Status error = fault::next("GetCursorPos"); !error.succeeded())
        return error;
    const host::UserInterface& ui = host::userInterface();
    if (!ui.hasCursor)
        return kErrorAccessDenied;
    x = ui.cursorX;
    y = ui.cursorY;
    return kSuccess;
}

}  // namespace platform
