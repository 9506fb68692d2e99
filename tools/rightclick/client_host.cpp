#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>

#include "comserver/class_id.h"
#include "comserver/identifiers.h"
#include "comserver/module.h"
#include "comserver/server_process.h"
#include "explorercommand/command_class.h"
#include "foundation/path/path.h"
#include "platform/host/com_host.h"
#include "platform/host/item_array_host.h"
#include "platform/host/menu_host.h"
#include "platform/host/module_host.h"
#include "platform/host/process_host.h"
#include "platform/host/registry_host.h"
#include "platform/host/shell_host.h"
#include "platform/host/utf8.h"
#include "platform/module.h"
#include "platform/registry.h"
#include "platform/shell.h"
#include "shellext/exports.h"
#include "tools/rightclick/client.h"
#include "tools/rightclick/com_pointer.h"
#include "tools/rightclick/failure.h"
#include "tools/rightclick/text.h"

namespace rightclick {
namespace {

using nmshell::SelectionKind;

const std::map<std::string, std::uint32_t> kElevationTypes = {{"0", platform::kElevationTypeDefault},
                                                              {"1", platform::kElevationTypeLimited},
                                                              {"2", platform::kElevationTypeFull}};
const std::map<std::string, std::optional<platform::host::RecycleBin>> kRecycleBins = {
    {"none", std::nullopt},
    {"empty", platform::host::RecycleBin{0, 0}},
    {"full", platform::host::RecycleBin{4096, 3}}};

void approve() {
    std::u16string path = u"HKEY_LOCAL_MACHINE\\";
    path += nmshell::kApprovalPath;
    platform::host::putText(path, nmshell::kFileSystemClassId, platform::kRegSz, nmshell::kHandlerName);
}

void set(const char16_t* name, std::uint32_t type, std::string_view bytes) {
    std::u16string path = u"HKEY_CURRENT_USER\\";
    path += nmshell::kSettingsPath;
    platform::host::putValue(path, name, type, bytes);
}

std::u16string fullPath(const std::u16string& name) {
    std::filesystem::path path = std::filesystem::absolute(platform::toHostName(name)).lexically_normal();
    if (!path.has_filename() && path.has_relative_path())
        path = path.parent_path();  // the shell names folders without a separator at the end
    const std::u16string full = platform::fromHostName(path.native());
    if (owlkit::pathType(full) == owlkit::PathType::Unreadable)
        throw Failure(ExitCode::MissingObject, "no such file: " + utf8(name));
    return full;
}

// There are no drives here, so every letter stands for one.
std::u16string drivePath(const std::u16string& name) {
    if (platform::driveNumber(name) < 0)
        throw Failure(ExitCode::MissingObject, "no such drive: " + utf8(name));
    return name.ends_with(u':') ? name + u'\\' : name;
}

std::vector<MenuEntry> entriesFrom(const platform::host::Menu& menu, std::size_t position) {
    std::vector<MenuEntry> entries;
    for (std::size_t i = position; i < menu.items.size(); ++i) {
        const platform::host::RecordedItem& item = menu.items[i];
        MenuEntry& entry = entries.emplace_back();
        entry.text = item.text;
        entry.id = item.request.id;
        entry.separator = item.request.type == platform::kTypeSeparator;
        entry.submenu = item.submenu != nullptr;
        entry.grayed = item.request.state == platform::kStateGrayed;
        entry.bitmap = static_cast<int>(platform::host::bitmapId(item.request.bitmap));
        if (item.submenu)
            entry.children = entriesFrom(*item.submenu, 0);
    }
    return entries;
}

struct DropListTraits {
    using Type = void*;
    static constexpr Type none() { return nullptr; }
    static void close(Type global) noexcept { platform::host::freeDropList(global); }
};

// Sends what is written to standard output to standard error for as long as it lives.
class OutputAside {
  public:
    OutputAside() {
        std::fflush(stdout);
        kept_ = dup(STDOUT_FILENO);
        dup2(STDERR_FILENO, STDOUT_FILENO);
    }
    OutputAside(const OutputAside&) = delete;
    OutputAside& operator=(const OutputAside&) = delete;
    ~OutputAside() {
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }

  private:
    int kept_;
};

}  // namespace

struct Client::State {
    // Options.
    std::string elevation = "1";
    std::string recycleBin = "full";
    std::string icons = "on";
    std::string language;

    std::vector<std::u16string> paths;
    platform::UniqueHandle<DropListTraits> dropList;
    std::optional<platform::host::DataObject> data;
    std::optional<platform::host::ItemArray> items;
    platform::MenuHandle menu;
    bool attached = false;

    // Stands for the module that the extension would be.
    HINSTANCE instance() { return reinterpret_cast<HINSTANCE>(this); }

    void setFacts(SelectionKind kind) {
        approve();
        if (icons == "off")
            set(u"Icons", platform::kRegDword, std::string_view("\0\0\0\0", 4));
        const std::u16string name = wide(language);
        if (!name.empty())
            set(u"Language", platform::kRegSz,
                {reinterpret_cast<const char*>(name.c_str()), (name.size() + 1) * sizeof(char16_t)});
        platform::host::tokenRecord().elevationType = kElevationTypes.at(elevation);
        const bool drives = kind == SelectionKind::Drives;
        platform::host::setRecycleBin(drives && !paths.empty() ? paths.front() : u"",
                                      kRecycleBins.at(recycleBin));
        platform::host::startShellProgramsForReal(true);
    }

    ~State() {
        menu.reset();  // its bitmaps belong to the module
        if (attached)
            DllMain(instance(), DLL_PROCESS_DETACH, nullptr);
    }
};

Client::Client() : state_(std::make_unique<State>()) {}
Client::~Client() = default;

void Client::addOptions(CLI::App& app) {
    const std::string group = "What the stand-ins for the platform report";
    app.add_option("--elevation", state_->elevation, "0 no split token, 1 limited (default), 2 full")
        ->check(CLI::IsMember({"0", "1", "2"}))
        ->group(group);
    app.add_option("--recycle-bin", state_->recycleBin, "none, empty or full (default)")
        ->check(CLI::IsMember({"none", "empty", "full"}))
        ->group(group);
    app.add_option("--icons", state_->icons, "the setting: on (default) or off")
        ->check(CLI::IsMember({"on", "off"}))
        ->group(group);
    app.add_option("--language", state_->language, "the setting: the name of a language")
        ->type_name("CODE")
        ->group(group);
}

void Client::select(const Request& request) {
    if (!request.dll.empty())
        throw Failure(ExitCode::PlatformFailure,
                      "--dll needs Windows; here the extension is part of this program");
    for (const std::u16string& path : request.paths)
        state_->paths.push_back(request.kind == SelectionKind::Drives ? drivePath(path) : fullPath(path));
    state_->setFacts(request.kind);
    if (request.kind == SelectionKind::RecycleBin)
        return;
    std::vector<platform::host::DropItem> items;
    for (const std::u16string& path : state_->paths)
        items.push_back({path});
    state_->dropList.reset(platform::host::makeDropList(std::move(items)));
    state_->data.emplace(state_->dropList.get());
}

const std::vector<std::u16string>& Client::paths() const {
    return state_->paths;
}

HRESULT Client::createObject(REFCLSID classId, REFIID iid, void** object) {
    const bool isCommand = classId == nmshell::classIdFrom(nmshell::kCommandClassId);
    platform::host::setModuleFileName(state_->instance(),
                                      owlkit::folderOf(platform::moduleFileName(nullptr)) +
                                          (isCommand ? u"nmcommand.dll" : u"nmshell.dll"));
    state_->attached = (isCommand ? nmshell::enterModule(state_->instance(), DLL_PROCESS_ATTACH, nullptr,
                                                         nmshell::kCommandTexts)
                                  : DllMain(state_->instance(), DLL_PROCESS_ATTACH, nullptr)) != FALSE;
    if (!state_->attached)
        return E_FAIL;
    ComPointer<IClassFactory> factory;
    const HRESULT result = isCommand ? nmshell::getCommandClassObject(nmshell::processModule(), classId,
                                                                      IID_IClassFactory, receive(factory))
                                     : DllGetClassObject(classId, IID_IClassFactory, receive(factory));
    return FAILED(result) ? result : factory.get()->CreateInstance(nullptr, iid, object);
}

bool Client::usesRegistration() const {
    return false;
}

std::u16string Client::modulePath() const {
    return platform::moduleFileName(state_->instance());
}

IShellItemArray* Client::itemArray() {
    return &state_->items.emplace(std::vector<std::optional<std::u16string>>(paths().begin(), paths().end()));
}

IDataObject* Client::dataObject() {
    return state_->data ? &*state_->data : nullptr;
}

const char* Client::dataObjectSource() const {
    return state_->data ? "client" : "none";
}

platform::MenuRef Client::openMenu(std::uint32_t& position) {
    state_->menu = platform::createMenu();
    position = 0;
    return state_->menu.get();
}

std::vector<MenuEntry> Client::readMenu(std::uint32_t position) {
    return entriesFrom(platform::host::menu(state_->menu.get()), position);
}

std::vector<Start> Client::run(const std::function<void()>& command, bool silent) {
    {
        std::optional<OutputAside> aside;
        if (silent)
            aside.emplace();
        command();
        while (wait(nullptr) > 0) {
        }
    }
    std::vector<Start> starts;
    for (const platform::host::ShellStart& start : platform::host::shellStarts())
        starts.push_back({start.verb, start.file, start.parameters});
    return starts;
}

void Client::takePicture(const std::u16string&, int) {
    throw Failure(ExitCode::PlatformFailure, "--shot needs Windows: there is no menu on a screen here");
}

}  // namespace rightclick
