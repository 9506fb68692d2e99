#include "contextmenu/menu_model.h"

namespace nmshell {
namespace {

constexpr int kProductBitmap = 236;
constexpr int kRecycleBinBitmap = 233;

class Builder {
  public:
    Builder(const Selection& selection, const MenuFacts& facts, const owlkit::interlang& texts)
        : selection_(selection), facts_(facts), texts_(texts) {}

    std::vector<MenuEntry> build() {
        std::vector<MenuEntry> entries;
        switch (selection_.kind) {
            case SelectionKind::Files:
                if (selection_.count == 0)
                    return {};
                entries = {separator(), wipeFiles()};
                break;
            case SelectionKind::Drives:
                if (selection_.count == 0)
                    return {};
                entries = {separator(), wipeDrive(), entry(kCleanDrive), driveRecycleBin()};
                break;
            case SelectionKind::RecycleBin:
                entries = {separator(), allRecycleBins()};
                break;
            default:
                return {};
        }
        entries.push_back(product());
        entries.push_back(separator());
        return entries;
    }

  private:
    static MenuEntry separator() {
        return {std::u16string(kSeparatorText), kNoCommand, kNoBitmap, false, false, {}};
    }

    MenuEntry entry(std::uint32_t offset, bool grayed = false) const {
        const Command& row = command(offset);
        return {texts_.GetText(row.menuKey), offset, row.bitmap, grayed, false, {}};
    }

    static MenuEntry submenu(std::u16string text, int bitmap, bool grayed, std::vector<MenuEntry> children) {
        return {std::move(text), kNoCommand, bitmap, grayed, true, std::move(children)};
    }

    // A single path that has vanished since is looked up under the empty key; the entry is still added.
    std::u16string_view wipeFilesKey() const {
        if (selection_.count >= 2)
            return u"CXT_MENU_WIPE_DATA";
        switch (facts_.firstPathType) {
            case owlkit::PathType::File:
                return u"CXT_MENU_WIPE_FILE";
            case owlkit::PathType::Folder:
                return u"CXT_MENU_WIPE_FOLDER";
            default:
                return u"";
        }
    }

    MenuEntry wipeFiles() const {
        return {texts_.GetText(wipeFilesKey()), kWipeFiles, command(kWipeFiles).bitmap, false, false, {}};
    }

    MenuEntry wipeDrive() const {
        return entry(kWipeDrive, selection_.count >= 2 || facts_.firstPathOnSystemDrive);
    }

    // The bin of one drive tells by a postfix why it cannot be chosen; that of several drives does not.
    MenuEntry driveRecycleBin() const {
        std::u16string text = texts_.GetText(u"CXT_MENU_WIPE_DRIVE_TRASH");
        const bool grayed = selection_.count != 1 || facts_.recycleBin != RecycleBinState::HoldsItems;
        if (selection_.count == 1 && grayed) {
            const bool empty = facts_.recycleBin == RecycleBinState::Empty;
            text += u' ';
            text += texts_.GetText(empty ? u"CXT_MENU_EMPTY_POSTFIX" : u"CXT_MENU_NONE_POSTFIX");
        }
        return submenu(std::move(text), kRecycleBinBitmap, grayed, owners(kUserTrashDrive, kAdminTrashDrive));
    }

    MenuEntry allRecycleBins() const {
        return submenu(texts_.GetText(u"CXT_MENU_WIPE_ALL_TRASH"), kRecycleBinBitmap,
                       facts_.recycleBin != RecycleBinState::HoldsItems,
                       owners(kUserTrashAll, kAdminTrashAll));
    }

    std::vector<MenuEntry> owners(std::uint32_t user, std::uint32_t admin) const {
        return {entry(user, facts_.elevation == owlkit::ElevationState::Full),
                entry(admin, facts_.elevation == owlkit::ElevationState::Unknown)};
    }

    MenuEntry product() const {
        MenuEntry about = entry(kAbout);
        about.text = texts_.GetTextWithArgs(command(kAbout).menuKey, kProductName, {});
        return submenu(texts_.GetTextWithArgs(u"CXT_MENU_PARENT", kProductName, {}), kProductBitmap, false,
                       {entry(kOptions), entry(kStandalone), separator(), entry(kUpdate), entry(kRegister),
                        entry(kUpgrade), separator(), entry(kHelp), std::move(about)});
    }

    const Selection& selection_;
    const MenuFacts& facts_;
    const owlkit::interlang& texts_;
};

}  // namespace

std::vector<MenuEntry> buildMenu(const Selection& selection, const MenuFacts& facts,
                                 const owlkit::interlang& texts) {
    return Builder(selection, facts, texts).build();
}

}  // namespace nmshell
