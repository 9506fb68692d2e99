#include "tools/rightclick/command_menu.h"

#include "comserver/class_id.h"
#include "comserver/identifiers.h"
#include "explorercommand/command_tree.h"
#include "foundation/text/number.h"
#include "tools/rightclick/failure.h"

namespace rightclick {
namespace {

constexpr HRESULT kNotRegistered = static_cast<HRESULT>(0x80040154u);  // REGDB_E_CLASSNOTREG

// The text that `get` hands out, which is then freed; empty when it fails.
std::u16string textFrom(auto get, HRESULT* result = nullptr) {
    LPWSTR text = nullptr;
    const HRESULT answer = get(&text);
    if (result)
        *result = answer;
    if (FAILED(answer) || !text)
        return {};
    std::u16string copy(reinterpret_cast<const char16_t*>(text));
    CoTaskMemFree(text);
    return copy;
}

// What the shell does with a state that is slow to have: it asks again where it may take its time.
EXPCMDSTATE stateOf(IExplorerCommand& command, IShellItemArray* items) {
    EXPCMDSTATE state = ECS_ENABLED;
    HRESULT result = command.GetState(items, FALSE, &state);
    if (result == E_PENDING)
        result = command.GetState(items, TRUE, &state);
    require(result, "a command has no state");
    return state;
}

std::uint32_t offsetOf(IExplorerCommand& command) {
    GUID name = {};
    require(command.GetCanonicalName(&name), "a command has no name");
    nmshell::MenuEntry entry;
    for (entry.offset = 0; entry.offset < nmshell::kCommandCount; ++entry.offset)
        if (IsEqualIID(nmshell::canonicalName(entry, false), name))
            return entry.offset;
    return nmshell::kNoCommand;
}

}  // namespace

void CommandMenu::open(const Request& request) {
    client_.select(request);
    items_ = client_.itemArray();
    ComPointer<IExplorerCommand> root;
    const HRESULT made = client_.createObject(nmshell::classIdFrom(nmshell::kCommandClassId),
                                              IID_IExplorerCommand, receive(root));
    if (made == kNotRegistered)
        throw Failure(
            ExitCode::ExtensionUnavailable,
            "the class of the commands is not registered for use in this process, which its package "
            "does not do; --dll names the file");
    require(made, "the root command cannot be made");
    root_ = read(std::move(root));
}

MenuEntry CommandMenu::read(ComPointer<IExplorerCommand> owned) {
    IExplorerCommand& command = *owned.get();
    EXPCMDFLAGS flags = ECF_DEFAULT;
    require(command.GetFlags(&flags), "a command has no flags");
    MenuEntry entry;
    entry.separator = (flags & ECF_ISSEPARATOR) != 0;
    if (entry.separator)
        return entry;
    const EXPCMDSTATE state = stateOf(command, items_);
    entry.hidden = (state & ECS_HIDDEN) != 0;
    entry.grayed = (state & ECS_DISABLED) != 0;
    entry.submenu = (flags & ECF_HASSUBCOMMANDS) != 0;
    entry.text = textFrom([&](LPWSTR* text) { return command.GetTitle(items_, text); });
    entry.bitmap = bitmapOf(command);
    if (entry.submenu && !entry.hidden)
        entry.children = readBelow(command);
    const std::uint32_t offset = offsetOf(command);
    if (offset != nmshell::kNoCommand) {
        entry.id = kFirstId + offset;
        commands_.emplace_back(offset, std::move(owned));
    }
    return entry;
}

std::vector<MenuEntry> CommandMenu::readBelow(IExplorerCommand& command) {
    std::vector<MenuEntry> entries;
    ComPointer<IEnumExplorerCommand> below;
    require(command.EnumSubCommands(receive(below)), "a submenu has no commands");
    for (;;) {
        ComPointer<IExplorerCommand> next;
        const HRESULT result = below.get()->Next(1, receive(next), nullptr);
        require(result, "a submenu has no next command");
        if (result != S_OK)
            return entries;
        entries.push_back(read(std::move(next)));
    }
}

// "FILE,-ID" with the extension's own file.
int CommandMenu::bitmapOf(IExplorerCommand& command) const {
    const std::u16string icon = textFrom([&](LPWSTR* text) { return command.GetIcon(items_, text); });
    const std::u16string own = client_.modulePath() + u",-";
    if (icon.empty())
        return kNoBitmap;
    return icon.starts_with(own)
               ? owlkit::parseInt32Or(std::u16string_view(icon).substr(own.size()), kOtherBitmap)
               : kOtherBitmap;
}

std::vector<MenuEntry> CommandMenu::entries(bool) const {
    return {root_};
}

IExplorerCommand* CommandMenu::find(std::uint32_t offset) const {
    for (const auto& [known, command] : commands_)
        if (known == offset)
            return command.get();
    return nullptr;
}

HRESULT CommandMenu::pick(std::uint32_t offset) {
    IExplorerCommand* const command = find(offset);
    return command ? command->Invoke(items_, nullptr) : E_FAIL;
}

HRESULT CommandMenu::helpText(std::uint32_t offset, std::u16string& text) {
    IExplorerCommand* const command = find(offset);
    HRESULT result = E_FAIL;
    if (command)
        text = textFrom([&](LPWSTR* tip) { return command->GetToolTip(items_, tip); }, &result);
    return result;
}

}  // namespace rightclick
