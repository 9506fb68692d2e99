// For tests of the commands: what a shell asks of them.
#pragma once

#include "explorercommand/command_class.h"
#include "explorercommand/explorer_command.h"
#include "platform/host/item_array_host.h"
#include "testing/extension.h"

namespace test {

using host::ItemArray;

inline constexpr CLSID kCommandClass = {
    0xB1F60D94, 0x52C8, 0x4A37, {0x8E, 0x7D, 0x4C, 0x90, 0xA3, 0xD1, 0xE6, 0xF5}};

class CommandTest : public ExtensionTest {
  protected:
    CommandTest() { module_.file = folder() + u"nmcommand.dll"; }

    // The root command for `kind`, through the class object where there is one.
    Ref<IExplorerCommand> root(nmshell::SelectionKind kind) {
        return made<IExplorerCommand>([&](void** object) {
            if (kind != nmshell::SelectionKind::Files)
                return nmshell::makeObject<nmshell::ExplorerCommand>(IID_IExplorerCommand, object, module_,
                                                                     kind);
            const auto factory = made<IClassFactory>([&](void** made) {
                return nmshell::getCommandClassObject(module_, kCommandClass, IID_IClassFactory, made);
            });
            return factory->CreateInstance(nullptr, IID_IExplorerCommand, object);
        });
    }

    static std::vector<Ref<IExplorerCommand>> children(IExplorerCommand& parent) {
        std::vector<Ref<IExplorerCommand>> result;
        IEnumExplorerCommand* found = nullptr;
        if (parent.EnumSubCommands(&found) != S_OK)
            return result;
        const Ref<IEnumExplorerCommand> commands(found);
        for (IExplorerCommand* next = nullptr; commands->Next(1, &next, nullptr) == S_OK;)
            result.emplace_back(next);
        return result;
    }

    // Everything below `parent`.
    static std::vector<Ref<IExplorerCommand>> all(IExplorerCommand& parent) {
        std::vector<Ref<IExplorerCommand>> result;
        for (Ref<IExplorerCommand>& child : children(parent)) {
            std::vector<Ref<IExplorerCommand>> below = all(*child);
            result.push_back(std::move(child));
            std::move(below.begin(), below.end(), std::back_inserter(result));
        }
        return result;
    }

    // What `get` hands out; empty when it fails.
    static std::u16string text(auto get) {
        LPWSTR given = nullptr;
        const HRESULT result = get(&given);
        EXPECT_EQ(result == S_OK, given != nullptr);
        const std::u16string copy(given ? given : u"");
        CoTaskMemFree(given);
        return copy;
    }
    static std::u16string title(IExplorerCommand& command, IShellItemArray* items) {
        return text([&](LPWSTR* name) { return command.GetTitle(items, name); });
    }

    static std::uint32_t offsetOf(IExplorerCommand& command) {
        GUID name = {};
        EXPECT_EQ(command.GetCanonicalName(&name), S_OK);
        return name.Data4[7] < nmshell::kCommandCount && name.Data1 != 0 ? name.Data4[7]
                                                                         : nmshell::kNoCommand;
    }
};

}  // namespace test
