#include "contextmenu/menu_model.h"

#include <concepts>
#include <utility>

#include "foundation/charset/convert.h"
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
        return entry(offset, command(offset).menuKey, grayed);
    }
    MenuEntry entry(std::uint32_t offset, std::string_view key, bool grayed = false) const {
        return {.text = texts_.keptText(key),
                .namesProduct = offset == kAbout,
                .offset = offset,
                .bitmap = command(offset).bitmap,
                .grayed = grayed};
    }

    MenuEntry submenu(std::string_view key, int bitmap, bool grayed, std::vector<MenuEntry> children) const {
        return {.text = texts_.keptText(key),
                .bitmap = bitmap,
                .grayed = grayed,
                .submenu = true,
                .children = std::move(children)};
    }

    // A single path that has vanished since is looked up under the empty key; the entry is still added.
    std::string_view wipeFilesKey() const {
        if (selection_.count >= 2)
            return "CXT_MENU_WIPE_DATA";
        switch (facts_.firstPathType) {
            case owlkit::PathType::File:
                return "CXT_MENU_WIPE_FILE";
            case owlkit::PathType::Folder:
                return "CXT_MENU_WIPE_FOLDER";
            case owlkit::PathType::Unreadable:
                break;
        }
        return "";
    }

    MenuEntry wipeFiles() const { return entry(kWipeFiles, wipeFilesKey()); }

    MenuEntry wipeDrive() const {
        return entry(kWipeDrive, selection_.count >= 2 || facts_.firstPathOnSystemDrive);
    }

    // The bin of one drive tells by a postfix why it cannot be chosen; that of several drives does not.
    MenuEntry driveRecycleBin() const {
        const bool grayed = selection_.count != 1 || facts_.recycleBin != RecycleBinState::HoldsItems;
        MenuEntry bin = submenu("CXT_MENU_WIPE_DRIVE_TRASH", IDB_RECYCLE_BIN, grayed,
                                owners(kUserTrashDrive, kAdminTrashDrive));
        if (selection_.count == 1 && grayed)
            bin.postfix =
                texts_.keptText(facts_.recycleBin == RecycleBinState::Empty ? "CXT_MENU_EMPTY_POSTFIX"
                                                                            : "CXT_MENU_NONE_POSTFIX");
        return bin;
    }

    MenuEntry allRecycleBins() const {
        return submenu("CXT_MENU_WIPE_ALL_TRASH", IDB_RECYCLE_BIN,
                       facts_.recycleBin != RecycleBinState::HoldsItems,
                       owners(kUserTrashAll, kAdminTrashAll));
    }

    std::vector<MenuEntry> owners(std::uint32_t user, std::uint32_t admin) const {
        return listOf(entry(user, facts_.elevation == owlkit::ElevationState::Full),
                      entry(admin, facts_.elevation == owlkit::ElevationState::Unknown));
    }

    MenuEntry product() const {
        MenuEntry product =
            submenu("CXT_MENU_PARENT", IDB_NULLMARK, false,
                    listOf(entry(kOptions), entry(kStandalone), separatorEntry(), entry(kUpdate),
                           entry(kRegister), entry(kUpgrade), separatorEntry(), entry(kHelp), entry(kAbout)));
        product.namesProduct = true;
        return product;
    }

    const Selection& selection_;
    const MenuFacts& facts_;
    const owlkit::interlang& texts_;
};

}  // namespace

bool MenuEntry::isSeparator() const {
    std::string_view rest = text, dashes = kSeparatorText;
    while (!rest.empty()) {
        if (namesProduct && rest.starts_with("%2")) {
            rest.remove_prefix(2);
        } else if (!dashes.empty() && rest.front() == dashes.front()) {
            rest.remove_prefix(1);
            dashes.remove_prefix(1);
        } else {
            return false;
        }
    }
    return dashes.empty() && postfix.data() == nullptr;
}

void appendShownText(const MenuEntry& entry, std::u16string& text) {
    const std::size_t start = text.size();
    owlkit::appendUtf8(text, entry.text);
    const auto put = [&](std::u16string_view place, std::u16string_view argument) {
        for (std::size_t at = start; (at = text.find(place, at)) != text.npos; at += argument.size())
            text.replace(at, place.size(), argument);
    };
    if (entry.namesProduct) {
        put(u"%1", kProductName);
        put(u"%2", {});
    }
    if (entry.postfix.data() != nullptr) {
        text += u' ';
        owlkit::appendUtf8(text, entry.postfix);
    }
}

// A place of the product's name is shorter than the name.
std::size_t mostShownUnits(const MenuEntry& entry) {
    return entry.text.size() * kProductName.size() + 1 + entry.postfix.size();
}

std::vector<MenuEntry> buildMenu(const Selection& selection, const MenuFacts& facts,
                                 const owlkit::interlang& texts) {
    return Builder(selection, facts, texts).build();
}

}  // namespace nmshell
