#include "foundation/registry/registry_key.h"
#include "platform/image.h"
#include "testing/host.h"
#include "tools/common/text.h"
#include "tools/setup/folder_access.h"
#include "tools/setup/status.h"
#include "tools/setup/steps.h"

namespace setup {
namespace {

using namespace test;
namespace fs = std::filesystem;

constexpr int kCsidlProgramFiles = 38;
const std::u16string kDefaults = u"HKEY_LOCAL_MACHINE\\Software\\NMark Shell\\Defaults\\";

class Recorder final : public Messages {
  public:
    void tell(const std::string& text) override { told += text + "\n"; }
    void complain(const std::string& text) override { complaints += text + "\n"; }

    std::string told, complaints;
};

// An installation folder, which is the current one, on an empty machine.
class SetupTest : public HostTest {
  public:
    SetupTest() { begin(); }

    void begin() const {
        for (const fs::path& old : fs::directory_iterator("."))
            fs::remove_all(old);
        host::resetRegistry();
        host::putKey(u"HKEY_LOCAL_MACHINE\\SOFTWARE");
        host::putKey(kApprovals);
        fs::create_directory("langs");
        makeFile("nmshell.dll", "MZ");
        makeFile("langs/a.lang.txt", "LANG: en\nKEY: LANGUAGE\nTEXT: English\n");
        makeFile("langs/b.lang.txt", "LANG: xx\nKEY: LANGUAGE\nTEXT: Own name\n");
    }

    std::u16string module() const { return folder() + u"nmshell.dll"; }

    // Registered, as far as both roots show it: the stand-in for the registry does not merge them.
    void install() {
        ASSERT_EQ(registerModule(folder(), Trial::Load, recorder_), Result::Done) << recorder_.complaints;
        for (const std::u16string_view id : nmshell::kClassIds) {
            std::u16string server = u"HKEY_CLASSES_ROOT\\CLSID\\";
            server.append(id).append(u"\\InProcServer32");
            host::putText(server, u"", platform::kRegSz, module());
        }
    }

    const fs::path here_ = fs::current_path();
    Recorder recorder_;
};

TEST_F(SetupTest, RegistersOnlyAModuleThatLoads) {
    const struct Case {
        const char* content;  // of nmshell.dll; null: there is none
        bool elevated;
        Result result;
        const char* says;
    } cases[] = {
        {"MZ", true, Result::Done, "Registered "},
        {nullptr, true, Result::NoModule, "there is no "},
        {"hello", true, Result::UnusableModule, "it is no 64-bit DLL"},
        {"MZ", false, Result::NotElevated, "administrator rights are needed"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.says);
        fs::remove("nmshell.dll");
        if (row.content)
            makeFile("nmshell.dll", row.content);
        if (!row.elevated)
            host::denyAccess(u"HKEY_LOCAL_MACHINE\\SOFTWARE", platform::kKeySetValue);
        const std::string before = host::dumpRegistry();
        for (const Trial trial : {Trial::Load, Trial::Headers}) {
            fault::disarm();
            if (trial == Trial::Headers)  // never asks for this
                fault::arm("LoadLibraryExW", 1, platform::kErrorAccessDenied);
            recorder_ = {};
            EXPECT_EQ(registerModule(folder(), trial, recorder_), row.result);
            EXPECT_NE((recorder_.told + recorder_.complaints).find(row.says), std::string::npos);
            EXPECT_EQ(host::dumpRegistry() == before, row.result != Result::Done);
            if (row.elevated) {
                EXPECT_EQ(unregisterModule(recorder_), Result::Done) << recorder_.complaints;
            }
        }
    }
    EXPECT_NE(platform::loadError(u"nmshell.dll"), platform::kSuccess) << "a name that would be searched for";
}

TEST_F(SetupTest, RefusesAFolderBehindALink) {
    fs::create_directory_symlink(here_ / "langs", "link");
    host::setFolderPath(kCsidlProgramFiles, here_.u16string());
    for (const fs::path& way : {here_ / "link", here_ / "link" / ""}) {
        EXPECT_EQ(checkFolder(way.u16string(), recorder_), Result::UnsafeFolder) << way;
        EXPECT_NE(recorder_.complaints.find("leads to " + (here_ / "langs").native()), std::string::npos);
    }
    EXPECT_EQ(checkFolder((here_ / "langs").u16string(), recorder_), Result::Done) << "but the folder itself";
}

TEST_F(SetupTest, FindsWhoCanChangeTheFolder) {
    const fs::path inner = here_ / "inner";
    const std::u16string asked = (inner / "").u16string();
    fs::create_directories(inner / "langs");
    makeFile("inner/nmshell.dll", "MZ");
    makeFile("inner/langs/a.lang.txt");
    const std::size_t around = intruders(asked).size();  // of the temporary folder, which is everybody's
    for (const char* const opened : {".", "nmshell.dll", "langs", "langs/a.lang.txt", ".."}) {
        SCOPED_TRACE(opened);
        fs::permissions(inner / opened, fs::perms::others_write, fs::perm_options::add);
        for (const bool inProgramFiles : {true, false}) {
            host::setFolderPath(kCsidlProgramFiles,
                                inProgramFiles ? std::optional(here_.u16string()) : std::nullopt);
            EXPECT_EQ(intruders(asked).size(), around + 1);
            recorder_ = {};
            EXPECT_EQ(checkFolder(asked, recorder_), inProgramFiles ? Result::Done : Result::UnsafeFolder);
            const std::string warning = "Everyone can change " + fs::canonical(inner / opened).native();
            EXPECT_NE(recorder_.complaints.find(warning), std::string::npos) << recorder_.complaints;
            EXPECT_EQ(recorder_.complaints.find("is refused") == std::string::npos, inProgramFiles);
        }
        fs::permissions(inner / opened, fs::perms::others_write, fs::perm_options::remove);
    }
    const auto failing = [&](const char* call) {
        fault::arm(call, 1, platform::kErrorAccessDenied);
        return intruders(folder()).front();
    };
    for (const char* unread : {"CreateFileW", "GetFinalPathNameByHandleW", "GetNamedSecurityInfoW", "GetAce"})
        EXPECT_EQ(failing(unread).account, u"") << unread << ": what cannot be read is not trusted";
    for (const char* unknown : {"OpenProcessToken", "GetTokenInformation", "ConvertSidToStringSidW"})
        EXPECT_EQ(failing(unknown).path, here_.u16string()) << unknown << ": nor is this process, unknown";
    fault::arm("LookupAccountSidW", 1, platform::kErrorAccessDenied);
    EXPECT_EQ(describe({u"/", u"S-1-1-0"}), "S-1-1-0 can change /") << "an account without a name";
    EXPECT_EQ(checkFolder(u"/no/such/folder", recorder_), Result::UnsafeFolder);
}

TEST_F(SetupTest, TellsWhyNoMenuAppears) {
    const struct Case {
        const char* name;
        void (*spoil)(SetupTest& test);
        const char* verdict;
    } cases[] = {
        {"in order", [](SetupTest&) {}, "The menu appears, in English (en)."},
        {"switched off", [](SetupTest&) { setFlag(u"Enabled", false); }, "value \"Enabled\" is 0"},
        {"another type", [](SetupTest&) { set(u"Enabled", u"0"); }, "The menu appears"},
        {"another language", [](SetupTest&) { set(u"Language", u" xx "); },
         "The menu appears, in Own name (xx)."},
        {"an unknown language",
         [](SetupTest& test) {
             fs::remove("langs/b.lang.txt");
             test.makeFile(
                 "langs/a.lang.txt",
                 "LANG: yy\nKEY: LANGUAGE\nTEXT: The first\nLANG: en\nKEY: LANGUAGE\nTEXT: English\n");
             set(u"Language", u"nb");
         },
         "The menu appears, in The first (yy)."},
        {"a syntax error", [](SetupTest& test) { test.makeFile("langs/c.lang.txt", "LANG: de\n\nTXT: x\n"); },
         "at line 3 in the following file. "},
        {"no languages", [](SetupTest&) { fs::remove_all("langs"); }, "Failed to load language files."},
        {"no module", [](SetupTest&) { fs::remove("nmshell.dll"); }, "there is no such file"},
        {"a text file", [](SetupTest& test) { test.makeFile("nmshell.dll", "text"); }, "it is no 64-bit DLL"},
        {"a handler is missing",
         [](SetupTest&) {
             const std::u16string_view drive = u"Software\\Classes\\Drive\\ShellEx\\ContextMenuHandlers\\";
             EXPECT_TRUE(owlkit::RegistryKey().deleteKey(
                 owlkit::RegistryRoot::LocalMachine, std::u16string(drive).append(nmshell::kHandlerName)));
         },
         "1 registry values are missing or different"},
        {"not registered", [](SetupTest& test) { unregisterModule(test.recorder_); }, "not registered"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        begin();
        install();
        row.spoil(*this);
        const Status status = takeStatus(module());
        EXPECT_NE(status.verdict.find(row.verdict), std::string::npos) << status.verdict;
        EXPECT_EQ(status.menuAppears, std::string_view(row.verdict).starts_with("The menu appears"));
    }
}

TEST_F(SetupTest, GivesDefaultsOnlyWhereThereIsNoSetting) {
    const std::string_view zero("\0\0\0\0", 4);
    host::putValue(kDefaults + u"Enabled", u"Enabled", platform::kRegDword, zero);
    host::putValue(kDefaults + u"Icons", u"Icons", platform::kRegDword, zero);
    host::putText(kDefaults + u"Language", u"Language", platform::kRegDword, u"de");  // of another type
    setFlag(u"Icons", true);
    EXPECT_EQ(applyDefaults(recorder_), Result::Done);
    const std::string key = "[" + platform::toHostName(kSettings) + "]";
    const std::set<std::string> settings = {key, key + " \"Enabled\" 4 00000000",
                                            key + " \"Icons\" 4 01000000"};
    EXPECT_EQ(registryLines(key), settings);

    host::putText(kDefaults + u"Language", u"Language", platform::kRegSz, u"de");
    host::denyAccess(u"HKEY_CURRENT_USER\\Software", platform::kKeySetValue);
    EXPECT_EQ(applyDefaults(recorder_), Result::Failed);
    EXPECT_NE(recorder_.complaints.find("the default of Language"), std::string::npos);
}

}  // namespace
}  // namespace setup
