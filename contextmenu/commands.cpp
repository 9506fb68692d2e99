#include "contextmenu/commands.h"

#include <iterator>

#include "resources/resource.h"

namespace nmshell {
namespace {

using enum CommandAction;
using enum RequestData;
constexpr Elevation kNever = Elevation::Never;
constexpr Elevation kAlways = Elevation::Always;
constexpr Elevation kWhenClosed = Elevation::WhenVolumeIsClosed;

// clang-format off
constexpr Command kCommands[] = {
    // kWipeFiles .. kAdminTrashAll. There is no command number 0x103.
    {"",                     "CXT_MENU_WIPE_FILES",       IDB_WIPE_FILES,        StartApplication, 0x101, kNever,      PathList, u""},
    {"CXT_MENU_WIPE_DRIVE",  "CXT_MENU_WIPE_DRIVE",       IDB_WIPE_DRIVE,        StartApplication, 0x102, kWhenClosed, PathList, u""},
    {"CXT_MENU_CLEAN_DRIVE", "CXT_MENU_CLEAN_DRIVE",      IDB_CLEAN_DRIVE,       StartApplication, 0x104, kNever,      PathList, u""},
    {"CXT_MENU_USER_TRASH",  "CXT_MENU_WIPE_DRIVE_TRASH", IDB_USER_RECYCLE_BIN,  StartApplication, 0x105, kNever,      PathList, u""},
    {"CXT_MENU_USER_TRASH",  "CXT_MENU_WIPE_ALL_TRASH",   IDB_USER_RECYCLE_BIN,  StartApplication, 0x105, kNever,      None,     u""},
    {"CXT_MENU_ADMIN_TRASH", "CXT_MENU_WIPE_DRIVE_TRASH", IDB_ADMIN_RECYCLE_BIN, StartApplication, 0x105, kAlways,     PathList, u""},
    {"CXT_MENU_ADMIN_TRASH", "CXT_MENU_WIPE_ALL_TRASH",   IDB_ADMIN_RECYCLE_BIN, StartApplication, 0x105, kAlways,     None,     u""},
    // kStandalone .. kUpdate
    {"CXT_MENU_STANDALONE",  "CXT_MENU_STANDALONE",       IDB_STANDALONE,        StartApplication, 0,     kNever,      None,     u""},
    {"",                     "CXT_MENU_WIPE_SWAP",        kNoBitmap,             StartApplication, 0x106, kNever,      None,     u""},
    {"CXT_MENU_OPTIONS",     "CXT_MENU_OPTIONS",          IDB_OPTIONS,           StartApplication, 0x107, kNever,      None,     u""},
    {"CXT_MENU_HELP",        "CXT_MENU_HELP",             IDB_HELP,              OpenPage,         0,     kNever,      None,     u"/user_guide.html"},
    {"CXT_MENU_UPDATE",      "CXT_MENU_UPDATE",           kNoBitmap,             OpenPage,         0,     kNever,      None,     u"/updates/nmark_%(VID).html"},
    // Compatible with the web site and the application: the register entry opens the upgrade page, the upgrade entry asks the application.
    {"CXT_MENU_REGISTER",    "CXT_MENU_REGISTER",         kNoBitmap,             OpenPage,         0,     kNever,      None,     u"/upgrade.html"},
    {"CXT_MENU_UPGRADE",     "CXT_MENU_UPGRADE",          kNoBitmap,             StartApplication, 0x108, kNever,      None,     u""},
    {"CXT_MENU_ABOUT",       "CXT_MENU_ABOUT",            IDB_ABOUT,             StartApplication, 0x109, kNever,      None,     u""},
};
// clang-format on
static_assert(std::size(kCommands) == kCommandCount);

}  // namespace

const Command& command(std::uint32_t offset) {
    return kCommands[offset];
}

}  // namespace nmshell
