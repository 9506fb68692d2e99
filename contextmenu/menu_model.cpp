#include "contextmenu/menu_model.h"

#include <concepts>
#include <utility>

#include "resources/resource.h"

namespace nmshell {
namespace {

constexpr std::size_t kCommonEntries = 2;  // the product submenu and a separator

class Builder {
  public:
    Builder(const Selection& selection, const MenuFacts& facts, const owlkit::interlang& texts)
        : selection_(selection), facts_(facts), texts_(texts) {}

    std::vector<MenuEntry> build() {
        std::vector<MenuEntry> entries = ownEntries();
        if (!entries.empty()) {
            entries.push_back(product());
            entries.push_back(separatorEntry());
        }
        return entries;
    }

  private:
    // What the kind of the selection adds; nothing for a number that is none of ours.
    std::vector<MenuEntry> ownEntries() const {
        switch (selection_.kind) {
            case SelectionKind::Files:
                if (selection_.count == 0)
                    break;
                return listOf(separatorEntry(), wipeFiles());
            case SelectionKind::Drives:
                if (selection_.count == 0)
                    break;
                return listOf(separatorEntry(), wipeDrive(), entry(kCleanDrive), driveRecycleBin());
            case SelectionKind::RecycleBin:
                return listOf(separatorEntry(), allRecycleBins());
        }
        return {};
    }

    // By moving: an initializer list would copy every entry with its text and its children.
    static std::vector<MenuEntry> listOf(std::same_as<MenuEntry> auto... entries) {
        std::vector<MenuEntry> list;
        list.reserve(sizeof...(entries) + kCommonEntries);
        (list.push_back(std::move(entries)), ...);
        return list;
    }

    MenuEntry entry(std::uint32_t offset, bool grayed = false) const {
        return entry(offset, texts_.GetText(command(offset).menuKey), grayed);
    }
    static MenuEntry entry(std::uint32_t offset, std::u16string text, bool grayed = false) {
        return {
            .text = std::move(text), .offset = offset, .bitmap = command(offset).bitmap, .grayed = grayed};
    }

    static MenuEntry submenu(std::u16string text, int bitmap, bool grayed, std::vector<MenuEntry> children) {
        return {.text = std::move(text),
                .bitmap = bitmap,
                .grayed = grayed,
                .submenu = true,
                .children = std::move(children)};
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
            case owlkit::PathType::Unreadable:
                break;
        }
        return u"";
    }

    MenuEntry wipeFiles() const { return entry(kWipeFiles, texts_.GetText(wipeFilesKey())); }

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
        return submenu(std::move(text), IDB_RECYCLE_BIN, grayed, owners(kUserTrashDrive, kAdminTrashDrive));
    }

    MenuEntry allRecycleBins() const {
        return submenu(texts_.GetText(u"CXT_MENU_WIPE_ALL_TRASH"), IDB_RECYCLE_BIN,
                       facts_.recycleBin != RecycleBinState::HoldsItems,
                       owners(kUserTrashAll, kAdminTrashAll));
    }

    std::vector<MenuEntry> owners(std::uint32_t user, std::uint32_t admin) const {
        return listOf(entry(user, facts_.elevation == owlkit::ElevationState::Full),
                      entry(admin, facts_.elevation == owlkit::ElevationState::Unknown));
    }

    MenuEntry product() const {
        return submenu(
            texts_.GetTextWithArgs(u"CXT_MENU_PARENT", kProductName, {}), IDB_NULLMARK, false,
            listOf(entry(kOptions), entry(kStandalone), separatorEntry(), entry(kUpdate), entry(kRegister),
                   entry(kUpgrade), separatorEntry(), entry(kHelp),
                   entry(kAbout, texts_.GetTextWithArgs(command(kAbout).menuKey, kProductName, {}))));
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
