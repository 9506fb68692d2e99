#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "comserver/identifiers.h"
#include "foundation/process/folders.h"
#include "foundation/registry/registry_key.h"
#include "platform/host/fault.h"
#include "platform/host/registry_host.h"
#include "platform/host/shell_host.h"
#include "platform/host/utf8.h"
#include "platform/image.h"
#include "platform/registry.h"
#include "testing/temporary.h"
#include "tools/common/text.h"
#include "tools/setup/folder_access.h"
#include "tools/setup/status.h"
#include "tools/setup/steps.h"

namespace setup {
namespace {

namespace host = platform::host;
namespace fs = std::filesystem;

constexpr int kCsidlProgramFiles = 38;
const std::u16string kSettings = u"HKEY_CURRENT_USER\\Software\\NMark Shell";
const std::u16string kDefaults = u"HKEY_LOCAL_MACHINE\\Software\\NMark Shell\\Defaults\\";

std::string number(char value) {
    return {value, 0, 0, 0};
}

class Recorder final : public Messages {
  public:
    void tell(const std::string& text) override { told += text + "\n"; }
    void complain(const std::string& text) override { complaints += text + "\n"; }

    std::string told;
    std::string complaints;
};

// An installation folder of its own, on an empty machine.
class SetupTest : public testing::Test {
  public:
    SetupTest() {
        host::resetRegistry();
        host::putKey(u"HKEY_LOCAL_MACHINE\\SOFTWARE");
        host::putKey(u"HKEY_LOCAL_MACHINE\\" + std::u16string(nmshell::kApprovalPath));
        platform::host::resetShell();
        fillFolder();
    }
    ~SetupTest() override {
        platform::fault::disarm();
        EXPECT_EQ(host::openKeyCount(), 0U);
        host::resetRegistry();
        owlkit::recordApplicationFolder(u"");
    }

    void fillFolder() const {
        fs::create_directories(folder_ / "langs");
        write("nmshell.dll", "MZ");
        write("langs/a.lang.txt", "LANG: en\nKEY: LANGUAGE\nTEXT: English\n");
        write("langs/b.lang.txt", "LANG: xx\nKEY: LANGUAGE\nTEXT: Own name\n");
    }

    void write(const char* name, const char* content) const { folder_.write(name, content); }
    std::u16string folder() const { return folder_.name(); }
    std::u16string module() const { return folder() + u"nmshell.dll"; }

    // Registered, as far as both roots show it: the stand-in for the registry does not merge them.
    void install() {
        ASSERT_EQ(registerModule(folder(), Trial::Load, recorder_), kDone) << recorder_.complaints;
        for (const std::u16string_view id : nmshell::kClassIds) {
            std::u16string server = u"HKEY_CLASSES_ROOT\\CLSID\\";
            server.append(id).append(u"\\InProcServer32");
            host::putText(server, u"", platform::kRegSz, module());
        }
    }

    const test::TemporaryFolder folder_;
    Recorder recorder_;
};

TEST_F(SetupTest, RegistersOnlyAModuleThatLoads) {
    struct Case {
        const char* name;
        const char* content;  // of nmshell.dll; null: there is none
        bool elevated;
        Result result;
        const char* says;
    };
    const Case cases[] = {
        {"good", "MZ", true, kDone, "Registered "},
        {"no file", nullptr, true, kNoModule, "there is no "},
        {"text file", "hello", true, kUnusableModule, "it is no 64-bit DLL"},
        {"no rights", "MZ", false, kNotElevated, "administrator rights are needed"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        fs::remove(folder_ / "nmshell.dll");
        if (row.content)
            write("nmshell.dll", row.content);
        if (!row.elevated)
            host::denyAccess(u"HKEY_LOCAL_MACHINE\\SOFTWARE", platform::kKeySetValue);
        const std::string before = host::dumpRegistry();
        for (const Trial trial : {Trial::Load, Trial::Headers}) {
            platform::fault::disarm();
            if (trial == Trial::Headers)  // never asks for this
                platform::fault::arm("LoadLibraryExW", 1, platform::kErrorAccessDenied);
            recorder_ = {};
            EXPECT_EQ(registerModule(folder(), trial, recorder_), row.result);
            EXPECT_NE((recorder_.told + recorder_.complaints).find(row.says), std::string::npos);
            EXPECT_EQ(host::dumpRegistry() == before, row.result != kDone);
            if (row.elevated) {
                EXPECT_EQ(unregisterModule(recorder_), kDone) << recorder_.complaints;
            }
        }
    }
    EXPECT_NE(platform::loadError(u"nmshell.dll"), platform::kSuccess) << "a name that would be searched for";
}

TEST_F(SetupTest, RefusesAFolderBehindALink) {
    const fs::path link = folder_ / "link";
    fs::create_directory_symlink(folder_ / "langs", link);
    platform::host::setFolderPath(kCsidlProgramFiles, tools::wide(folder_.path().native()));
    for (const fs::path& way : {link, link / ""}) {
        EXPECT_EQ(checkFolder(tools::wide(way.native()), recorder_), kUnsafeFolder) << way;
        EXPECT_NE(recorder_.complaints.find("leads to " + (folder_ / "langs").native()), std::string::npos);
    }
    EXPECT_EQ(checkFolder(tools::wide((folder_ / "langs").native()), recorder_), kDone)
        << "but the folder itself";
}

TEST_F(SetupTest, FindsWhoCanChangeTheFolder) {
    struct Case {
        const char* name;
        const char* opened;  // what everybody may write to
        bool program;        // Program Files is the folder above
        Result result;
    };
    const Case cases[] = {
        {"nothing", nullptr, false, kDone},
        {"the folder", ".", false, kUnsafeFolder},
        {"the module", "nmshell.dll", false, kUnsafeFolder},
        {"the languages", "langs", false, kUnsafeFolder},
        {"a language", "langs/a.lang.txt", false, kUnsafeFolder},
        {"a folder above", "..", false, kUnsafeFolder},
        {"in Program Files", ".", true, kDone},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        const fs::path inner = folder_ / "inner";
        fs::create_directories(inner / "langs");
        std::ofstream(inner / "nmshell.dll") << "MZ";
        std::ofstream(inner / "langs/a.lang.txt") << "";
        platform::host::setFolderPath(
            kCsidlProgramFiles,
            row.program ? std::optional(tools::wide(folder_.path().native())) : std::nullopt);
        const std::u16string asked = tools::wide((inner / "").native());
        const std::size_t around = intruders(asked).size();  // of the temporary folder, which is everybody's
        if (row.opened)
            fs::permissions(inner / row.opened, fs::perms::others_write, fs::perm_options::add);
        const std::vector<Intruder> found = intruders(asked);
        ASSERT_EQ(found.size(), around + (row.opened != nullptr));
        recorder_ = {};
        if (row.opened) {
            EXPECT_EQ(checkFolder(asked, recorder_), row.result);
            const std::string warning = "Everyone can change " + fs::canonical(inner / row.opened).native();
            EXPECT_NE(recorder_.complaints.find(warning), std::string::npos) << recorder_.complaints;
            EXPECT_EQ(recorder_.complaints.find("is refused") != std::string::npos, row.result != kDone);
        }
        fs::permissions(folder_.path(), fs::perms::others_write, fs::perm_options::remove);
        fs::remove_all(inner);
    }
    for (const char* unread :
         {"CreateFileW", "GetFinalPathNameByHandleW", "GetNamedSecurityInfoW", "GetAce"}) {
        platform::fault::arm(unread, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(intruders(folder()).front().account, u"")
            << unread << ": what cannot be read is not trusted";
    }
    for (const char* unknown : {"OpenProcessToken", "GetTokenInformation", "ConvertSidToStringSidW"}) {
        platform::fault::arm(unknown, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(intruders(folder()).front().path, tools::wide(folder_.path().native()))
            << unknown << ": nor is this process, unknown";
    }
    platform::fault::arm("LookupAccountSidW", 1, platform::kErrorAccessDenied);
    EXPECT_EQ(describe({u"/", u"S-1-1-0"}), "S-1-1-0 can change /") << "an account without a name";
    EXPECT_EQ(checkFolder(u"/no/such/folder", recorder_), kUnsafeFolder);
}

TEST_F(SetupTest, TellsWhyNoMenuAppears) {
    struct Case {
        const char* name;
        void (*spoil)(SetupTest& test);
        const char* verdict;
    };
    const Case cases[] = {
        {"in order", [](SetupTest&) {}, "The menu appears, in English (en)."},
        {"switched off",
         [](SetupTest&) { host::putValue(kSettings, u"Enabled", platform::kRegDword, number(0)); },
         "value \"Enabled\" is 0"},
        {"another type does not switch off",
         [](SetupTest&) { host::putText(kSettings, u"Enabled", platform::kRegSz, u"0"); },
         "The menu appears"},
        {"another language",
         [](SetupTest&) { host::putText(kSettings, u"Language", platform::kRegSz, u" xx "); },
         "The menu appears, in Own name (xx)."},
        {"an unknown language",
         [](SetupTest&) { host::putText(kSettings, u"Language", platform::kRegSz, u"nb"); },
         "The menu appears, in English (en)."},
        {"a syntax error", [](SetupTest& test) { test.write("langs/c.lang.txt", "LANG: de\n\nTXT: x\n"); },
         "at line 3 in the following file. "},
        {"no language files", [](SetupTest& test) { fs::remove_all(test.folder_ / "langs"); },
         "Failed to load language files."},
        {"no module", [](SetupTest& test) { fs::remove(test.folder_ / "nmshell.dll"); },
         "there is no such file"},
        {"a text file", [](SetupTest& test) { test.write("nmshell.dll", "text"); }, "it is no 64-bit DLL"},
        {"a handler is missing",
         [](SetupTest&) {
             owlkit::RegistryKey key;
             EXPECT_TRUE(
                 key.deleteKey(owlkit::RegistryRoot::LocalMachine,
                               u"Software\\Classes\\Drive\\ShellEx\\ContextMenuHandlers\\QuietOwl_NMark"));
         },
         "1 registry values are missing or different"},
        {"not registered", [](SetupTest& test) { unregisterModule(test.recorder_); }, "not registered"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        fs::remove_all(folder_.path());
        host::resetRegistry();
        host::putKey(u"HKEY_LOCAL_MACHINE\\" + std::u16string(nmshell::kApprovalPath));
        fillFolder();
        install();
        row.spoil(*this);
        const Status status = takeStatus(module());
        EXPECT_NE(status.verdict.find(row.verdict), std::string::npos) << status.verdict;
        EXPECT_EQ(status.menuAppears, std::string_view(row.verdict).starts_with("The menu appears"));
    }
}

TEST_F(SetupTest, GivesDefaultsOnlyWhereThereIsNoSetting) {
    host::putValue(kDefaults + u"Enabled", u"Enabled", platform::kRegDword, number(0));
    host::putValue(kDefaults + u"Icons", u"Icons", platform::kRegDword, number(0));
    host::putText(kDefaults + u"Language", u"Language", platform::kRegDword, u"de");  // of another type
    host::putValue(kSettings, u"Icons", platform::kRegDword, number(1));
    EXPECT_EQ(applyDefaults(recorder_), kDone);
    const std::string dump = host::dumpRegistry();
    const std::string settings = dump.substr(0, dump.find("[HKEY_LOCAL_MACHINE]"));
    EXPECT_NE(settings.find("\"Enabled\" 4 00000000"), std::string::npos) << settings;
    EXPECT_NE(settings.find("\"Icons\" 4 01000000"), std::string::npos) << settings;
    EXPECT_EQ(settings.find("Language"), std::string::npos) << settings;

    host::putText(kDefaults + u"Language", u"Language", platform::kRegSz, u"de");
    host::denyAccess(u"HKEY_CURRENT_USER\\Software", platform::kKeySetValue);
    EXPECT_EQ(applyDefaults(recorder_), kFailed);
    EXPECT_NE(recorder_.complaints.find("the default of Language"), std::string::npos);
}

}  // namespace
}  // namespace setup
