#include "contextmenu/menu_model.h"

#include <optional>

#include "platform/process.h"
#include "tests/host_fixture.h"

namespace nmshell {
namespace {

using namespace std::string_literals;

class MenuModelTest : public HostTest {};

// The texts in order, which are their keys without "CXT_MENU_"; "!" marks what is grayed, brackets hold a
// submenu.
std::string sketch(const std::vector<MenuEntry>& entries) {
    std::string result;
    for (const MenuEntry& entry : entries) {
        std::string text = platform::toHostName(entry.text);
        for (std::size_t at; (at = text.find("CXT_MENU_")) != std::string::npos;)
            text.erase(at, 9);
        result += (result.empty() ? "" : " ") + text + (entry.grayed ? "!" : "");
        if (entry.submenu)
            result += "[" + sketch(entry.children) + "]";
    }
    return result;
}

TEST_F(MenuModelTest, OffersWhatTheSelectionAllows) {
    constexpr SelectionKind kFiles = SelectionKind::Files;
    constexpr SelectionKind kDrives = SelectionKind::Drives;
    constexpr SelectionKind kBin = SelectionKind::RecycleBin;
    constexpr std::uint32_t kUnsplit = platform::kElevationTypeDefault;
    constexpr std::uint32_t kFull = platform::kElevationTypeFull;
    constexpr std::uint32_t kLimited = platform::kElevationTypeLimited;
    makeFile("file");
    std::filesystem::create_directory("sub");
    const struct {
        const char* name;
        SelectionKind kind;
        std::uint32_t count;
        std::u16string paths;
        std::optional<std::int64_t> bin;  // items in the recycle bin of D: (drives) or of all drives
        std::uint32_t elevation;
        std::string own;  // before the product submenu; empty when there is no menu at all
    } kCases[] = {
        {"file", kFiles, 1, u"file\0"s, {}, kUnsplit, "-- WIPE_FILE"},
        {"folder", kFiles, 1, u"sub\0"s, {}, kUnsplit, "-- WIPE_FOLDER"},
        {"vanished", kFiles, 1, u"gone\0"s, {}, kUnsplit, "-- "},
        {"one that could not be read", kFiles, 1, u"", {}, kUnsplit, "-- "},
        {"two files", kFiles, 2, u"file\0file\0"s, {}, kUnsplit, "-- WIPE_DATA"},
        {"two, one of them read", kFiles, 2, u"file\0"s, {}, kUnsplit, "-- WIPE_DATA"},
        {"no file", kFiles, 0, u"", {}, kUnsplit, ""},
        {"drive, bin holds items", kDrives, 1, u"D:\\\0"s, 1, kLimited,
         "-- WIPE_DRIVE CLEAN_DRIVE WIPE_DRIVE_TRASH[USER_TRASH ADMIN_TRASH]"},
        {"elevated", kDrives, 1, u"D:\\\0"s, 9, kFull,
         "-- WIPE_DRIVE CLEAN_DRIVE WIPE_DRIVE_TRASH[USER_TRASH! ADMIN_TRASH]"},
        {"token not split", kDrives, 1, u"D:\\\0"s, 9, kUnsplit,
         "-- WIPE_DRIVE CLEAN_DRIVE WIPE_DRIVE_TRASH[USER_TRASH ADMIN_TRASH!]"},
        {"bin empty", kDrives, 1, u"D:\\\0"s, 0, kLimited,
         "-- WIPE_DRIVE CLEAN_DRIVE WIPE_DRIVE_TRASH EMPTY_POSTFIX![USER_TRASH ADMIN_TRASH]"},
        {"no bin",
         kDrives,
         1,
         u"D:\\\0"s,
         {},
         kLimited,
         "-- WIPE_DRIVE CLEAN_DRIVE WIPE_DRIVE_TRASH NONE_POSTFIX![USER_TRASH ADMIN_TRASH]"},
        {"system drive", kDrives, 1, u"c:\\\0"s, 1, kLimited,
         "-- WIPE_DRIVE! CLEAN_DRIVE WIPE_DRIVE_TRASH NONE_POSTFIX![USER_TRASH ADMIN_TRASH]"},
        {"no drive", kDrives, 1, u"\\\\server\\share\0"s, 1, kLimited,
         "-- WIPE_DRIVE! CLEAN_DRIVE WIPE_DRIVE_TRASH NONE_POSTFIX![USER_TRASH ADMIN_TRASH]"},
        {"two drives", kDrives, 2, u"D:\\\0E:\\\0"s, 1, kLimited,
         "-- WIPE_DRIVE! CLEAN_DRIVE WIPE_DRIVE_TRASH![USER_TRASH ADMIN_TRASH]"},
        {"two drives, none read", kDrives, 2, u"", 1, kFull,
         "-- WIPE_DRIVE! CLEAN_DRIVE WIPE_DRIVE_TRASH![USER_TRASH! ADMIN_TRASH]"},
        {"no drives", kDrives, 0, u"", 1, kLimited, ""},
        {"recycle bin", kBin, 0, u"", 3, kLimited, "-- WIPE_ALL_TRASH[USER_TRASH ADMIN_TRASH]"},
        {"recycle bin, not split", kBin, 0, u"", 3, kUnsplit, "-- WIPE_ALL_TRASH[USER_TRASH ADMIN_TRASH!]"},
        {"recycle bin, elevated", kBin, 1, u"x\0"s, 3, kFull, "-- WIPE_ALL_TRASH[USER_TRASH! ADMIN_TRASH]"},
        {"recycle bin empty", kBin, 0, u"", 0, kLimited, "-- WIPE_ALL_TRASH![USER_TRASH ADMIN_TRASH]"},
        {"recycle bin unknown", kBin, 0, u"", {}, kLimited, "-- WIPE_ALL_TRASH![USER_TRASH ADMIN_TRASH]"},
        {"unknown kind", SelectionKind{3}, 1, u"file\0"s, 3, kLimited, ""},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        platform::resetShell();
        platform::tokenRecord() = {.elevationType = c.elevation};
        owlkit::forgetElevation();
        if (c.bin)
            platform::setRecycleBin(c.kind == kBin ? u"" : u"D:\\", platform::RecycleBin{0, *c.bin});
        SystemDrive systemDrive;
        const Selection selection{c.kind, c.count, c.paths};
        const std::vector<MenuEntry> menu = buildMenu(selection, gatherFacts(selection, systemDrive), {});
        EXPECT_EQ(sketch(menu),
                  c.own.empty()
                      ? ""
                      : c.own + " PARENT[OPTIONS STANDALONE -- UPDATE REGISTER UPGRADE -- HELP ABOUT] --");
    }
}

TEST_F(MenuModelTest, AsksTheSystemOnlyWhatTheSelectionNeeds) {
    SystemDrive systemDrive;
    const char* const kQuestions[] = {"GetFileAttributesW", "GetWindowsDirectoryW", "SHQueryRecycleBinW",
                                      "OpenProcessToken"};
    const struct {
        Selection selection;
        std::uint32_t calls[4];
    } kCases[] = {
        {{SelectionKind::Files, 1, u"a\0"s}, {1, 0, 0, 0}},
        {{SelectionKind::Files, 2, u"a\0b\0"s}, {0, 0, 0, 0}},
        {{SelectionKind::Drives, 0, u""}, {0, 0, 0, 0}},
        {{SelectionKind::Drives, 1, u"D:\\\0"s}, {0, 1, 1, 1}},
        {{SelectionKind::Drives, 2, u"D:\\\0E:\\\0"s},
         {0, 0, 0, 0}},  // the drive and the token are known by now
        {{SelectionKind::RecycleBin, 0, u""}, {0, 0, 1, 0}},
    };
    for (const auto& c : kCases) {
        fault::resetCounts();
        gatherFacts(c.selection, systemDrive);
        for (std::size_t i = 0; i < std::size(kQuestions); ++i)
            EXPECT_EQ(fault::calls(kQuestions[i]), c.calls[i]) << kQuestions[i] << " for " << &c - kCases;
    }
}

}  // namespace
}  // namespace nmshell
