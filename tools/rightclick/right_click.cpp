#include "tools/rightclick/right_click.h"

#include <algorithm>

#include "comserver/class_id.h"
#include "comserver/identifiers.h"
#include "contextmenu/commands.h"
#include "foundation/text/number.h"
#include "foundation/text/text.h"
#include "tools/common/diagnosis.h"
#include "tools/rightclick/failure.h"
#include "tools/rightclick/text.h"

namespace rightclick {
namespace {

constexpr std::size_t kHelpTextRoom = 1024;  // characters

bool holds(const MenuEntry& submenu, std::uint32_t offset) {
    return std::any_of(submenu.children.begin(), submenu.children.end(),
                       [&](const MenuEntry& entry) { return entry.id == kFirstId + offset; });
}

bool isSubmenuNamed(const MenuEntry& entry, const std::string& name) {
    if (!entry.submenu)
        return false;
    if (name == "nullmark")
        return holds(entry, nmshell::kAbout);
    if (name == "trash")
        return holds(entry, nmshell::kUserTrashDrive) || holds(entry, nmshell::kUserTrashAll);
    const std::int32_t offset = owlkit::parseInt32Or(std::string_view(name), -1);
    return offset >= 0 && holds(entry, static_cast<std::uint32_t>(offset));
}

}  // namespace

void RightClick::open(const Request& request) {
    client_.select(request);
    initialize(request);
    const platform::MenuRef menu = client_.openMenu(position_);
    result_ =
        menu_.get()->QueryContextMenu(static_cast<HMENU>(menu), position_, kFirstId, kLastId, request.flags);
}

void RightClick::initialize(const Request& request) {
    const CLSID classId = nmshell::classIdFrom(nmshell::kClassIds[static_cast<std::size_t>(request.kind)]);
    const HRESULT created = client_.createObject(classId, IID_IShellExtInit, receive(extension_));
    if (FAILED(created)) {
        const std::string reason = tools::whyUnavailable(request.kind, client_.usesRegistration());
        if (!reason.empty())
            throw Failure(ExitCode::ExtensionUnavailable, reason);
        require(created, "the extension's object cannot be made");
    }
    require(extension_.get()->QueryInterface(IID_IContextMenu, receive(menu_)),
            "the object has no context menu");
    const HRESULT initialized = extension_.get()->Initialize(nullptr, client_.dataObject(), nullptr);
    if (FAILED(initialized)) {
        const std::string reason = tools::whyNoTexts(tools::inspectLanguages(client_.modulePath()));
        if (!reason.empty())
            throw Failure(ExitCode::ExtensionUnavailable, "the extension has no texts: " + reason);
    }
    require(initialized, "the extension refuses the selection");
}

std::uint32_t RightClick::identifiers() const {
    return FAILED(result_) ? 0 : static_cast<std::uint32_t>(result_) & 0xFFFF;
}

std::vector<MenuEntry> RightClick::entries(bool all) {
    return client_.readMenu(all ? 0 : position_);
}

HRESULT RightClick::pick(std::uint32_t offset) {
    CMINVOKECOMMANDINFO info{};
    info.cbSize = sizeof info;
    info.lpVerb = reinterpret_cast<LPCSTR>(static_cast<UINT_PTR>(offset));
    info.nShow = 1;
    return menu_.get()->InvokeCommand(&info);
}

HRESULT RightClick::helpText(std::uint32_t offset, std::u16string& text) {
    text.assign(kHelpTextRoom, u'\0');
    const HRESULT result = menu_.get()->GetCommandString(offset, GCS_HELPTEXTW, nullptr,
                                                         reinterpret_cast<CHAR*>(text.data()), kHelpTextRoom);
    text.resize(FAILED(result) ? 0 : std::min(text.find(u'\0'), text.size()));
    return result;
}

int RightClick::submenuPosition(const std::string& name) {
    const std::string wanted = owlkit::toLowerAscii(name);
    const std::vector<MenuEntry> own = entries(false);
    if (wanted == "none" || own.empty())
        return -1;
    const auto found = std::find_if(own.begin(), own.end(),
                                    [&](const MenuEntry& entry) { return isSubmenuNamed(entry, wanted); });
    if (found == own.end())
        throw Failure(ExitCode::WrongUsage, "--open: the menu has no such submenu: " + name);
    if (found->grayed)
        throw Failure(ExitCode::PlatformFailure, "--open: the submenu is grayed: " + utf8(found->text));
    return static_cast<int>(position_) + static_cast<int>(found - own.begin());
}

}  // namespace rightclick
