#include "tools/setup/folder_access.h"

#include <algorithm>

#include "foundation/path/path.h"
#include "foundation/text/text.h"
#include "lang/language_file_names.h"
#include "platform/file.h"
#include "platform/shell.h"
#include "tools/common/text.h"

namespace setup {
namespace {

using platform::AccessEntry;
using platform::AccessList;

constexpr int kCsidlProgramFiles = 38;

constexpr std::uint32_t kChangeAccess =
    platform::kRightChangeAccess | platform::kRightChangeOwner | platform::kRightGenericAll;
// What lets an account put something else in the place of what is here.
constexpr std::uint32_t kChange = kChangeAccess | platform::kRightAddFile | platform::kRightAddFolder |
                                  platform::kRightDeleteChild | platform::kRightDelete |
                                  platform::kRightGenericWrite;
// What lets it put another folder in the place of one on the way here. Adding beside it does no harm.
constexpr std::uint32_t kReplaceChild = kChangeAccess | platform::kRightDeleteChild;
constexpr std::uint32_t kReplace = kReplaceChild | platform::kRightDelete;

bool isTrusted(std::u16string_view account, std::u16string_view ourselves) {
    constexpr std::u16string_view kTrusted[] = {
        u"S-1-5-18",                                                        // the system
        u"S-1-5-32-544",                                                    // administrators
        u"S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464",  // TrustedInstaller
        u"S-1-3-0",  // whoever makes something later: here an administrator
        u"S-1-3-4",  // the owner, who is looked at for himself
    };
    // Administrators of a domain, and the built-in one of a machine or domain.
    const bool domain =
        account.starts_with(u"S-1-5-21-") &&
        (account.ends_with(u"-500") || account.ends_with(u"-512") || account.ends_with(u"-519"));
    const bool known = !account.empty() && account == ourselves;  // empty: it could not be read
    return domain || known ||
           std::find(std::begin(kTrusted), std::end(kTrusted), account) != std::end(kTrusted);
}

class Search {
  public:
    Search() : ourselves_(platform::processAccount()) {}

    // Reports the first account that has one of `rights` at `path`. With `later`, entries for what will be
    // made there count too.
    void look(const std::u16string& path, std::uint32_t rights, bool later) {
        AccessList list;
        if (platform::accessList(path, list) != platform::kSuccess) {
            found_.push_back({path, {}});
            return;
        }
        const auto entry =
            std::find_if(list.allowed.begin(), list.allowed.end(), [&](const AccessEntry& each) {
                return (each.rights & rights) != 0 && (later || !each.inheritOnly) &&
                       !isTrusted(each.account, ourselves_);
            });
        if (!isTrusted(list.owner, ourselves_))
            found_.push_back({path, list.owner});
        else if (entry != list.allowed.end())
            found_.push_back({path, entry->account});
    }

    void lookAtFiles(const std::u16string& folder) {
        const auto names = platform::listFolder(folder).value_or(std::vector<std::u16string>());
        for (const std::u16string& name : names)
            look(owlkit::withTrailingSeparator(folder) + name, kChange, false);
    }

    std::vector<Intruder> take() { return std::move(found_); }

  private:
    std::u16string ourselves_;
    std::vector<Intruder> found_;
};

// The folder that `path`, which ends in no separator, lies in; empty above a root.
std::u16string above(const std::u16string& path) {
    const std::size_t separator = path.find_last_of(platform::kPathSeparator);
    if (separator == std::u16string::npos || separator + 1 == path.size())
        return {};
    const std::u16string folder = path.substr(0, separator);
    // "C:" and the empty text name roots only with their separator.
    return folder.empty() || folder.ends_with(u':') ? folder + platform::kPathSeparator : folder;
}

}  // namespace

std::vector<Intruder> intruders(const std::u16string& folder) {
    const std::u16string real = platform::finalPath(folder);
    if (real.empty())
        return {{folder, {}}};
    Search search;
    search.look(real, kChange, true);
    search.lookAtFiles(real);
    if (const std::u16string langs =
            owlkit::withTrailingSeparator(real) + std::u16string(owlkit::kLanguageFolder);
        owlkit::pathType(langs) == owlkit::PathType::Folder) {
        search.look(langs, kChange, true);
        search.lookAtFiles(langs);
    }
    for (std::u16string path = above(real); !path.empty(); path = above(path))
        search.look(path, above(path).empty() ? kReplaceChild : kReplace, false);
    return search.take();
}

std::u16string behindLink(const std::u16string& folder) {
    const std::u16string real = platform::finalPath(folder);
    const auto comparable = [](const std::u16string& path) {
        return owlkit::toLowerAscii(owlkit::withTrailingSeparator(path));
    };
    return comparable(folder) == comparable(real) ? std::u16string() : real;
}

bool liesInProgramFiles(const std::u16string& folder) {
    const std::u16string real = platform::finalPath(folder);
    const std::u16string programs =
        platform::finalPath(platform::folderPath(kCsidlProgramFiles).value_or(u""));
    return !programs.empty() && real.starts_with(owlkit::withTrailingSeparator(programs));
}

std::string describe(const Intruder& intruder) {
    if (intruder.account.empty())
        return "cannot tell who can change " + tools::utf8(intruder.path);
    return tools::utf8(platform::accountName(intruder.account)) + " can change " + tools::utf8(intruder.path);
}

}  // namespace setup
