#include "shellext/registration.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <regex>

#include "comserver/identifiers.h"
#include "comserver/settings.h"
#include "foundation/process/folders.h"
#include "foundation/registry/registry_key.h"
#include "foundation/text/text.h"
#include "platform/host/fault.h"
#include "platform/host/registry_host.h"
#include "platform/host/utf8.h"

namespace nmshell {
namespace {

namespace host = platform::host;
namespace fault = platform::fault;
using namespace std::string_literals;

const std::u16string kMachine = u"HKEY_LOCAL_MACHINE\\";

class RegistrationTest : public ::testing::Test {
  protected:
    RegistrationTest() {
        host::resetRegistry();
        const std::string folder = std::filesystem::temp_directory_path().string();
        owlkit::recordApplicationFolder(platform::fromHostName(folder));
        module_ = (std::filesystem::path(folder) / "nmshell.dll").string();
        // A machine with other extensions.
        host::putText(kMachine + std::u16string(kApprovalPath), u"{other}", platform::kRegSz, u"Other");
        for (const char16_t* parent :
             {u"AllFileSystemObjects\\ShellEx\\ContextMenuHandlers\\Other",
              u"Drive\\ShellEx\\ContextMenuHandlers",
              u"CLSID\\{645FF040-5081-101B-9F08-00AA002F954E}\\ShellEx\\ContextMenuHandlers"})
            host::putKey(kMachine + u"SOFTWARE\\Classes\\" + parent);
        host::putKey(u"HKEY_CURRENT_USER\\Software");
        before_ = host::dumpRegistry();
    }
    ~RegistrationTest() override {
        fault::disarm();
        EXPECT_EQ(host::openKeyCount(), 0U);
        host::resetRegistry();
        owlkit::recordApplicationFolder(u"");
    }

    static void dropApproval(std::u16string_view classId) {
        EXPECT_TRUE(owlkit::RegistryKey::deleteValue(owlkit::RegistryRoot::LocalMachine,
                                                     std::u16string(kApprovalPath), std::u16string(classId)));
    }

    std::string module_;
    std::string before_;
};

TEST_F(RegistrationTest, WritesEveryKeyAndTakesThemAway) {
    ASSERT_TRUE(RegisterExtension());
    std::string expected =
        R"([HKLM\SOFTWARE\Classes\AllFileSystemObjects\ShellEx\ContextMenuHandlers\QuietOwl_NMark]
"" 1 "FILES\0"
[HKLM\SOFTWARE\Classes\CLSID\FILES\InProcServer32]
"" 1 "MODULE\0"
"ThreadingModel" 1 "Apartment\0"
[HKLM\SOFTWARE\Classes\CLSID\{645FF040-5081-101B-9F08-00AA002F954E}\ShellEx\ContextMenuHandlers\QuietOwl_NMark]
"" 1 "BIN\0"
[HKLM\SOFTWARE\Classes\CLSID\BIN\InProcServer32]
"" 1 "MODULE\0"
"ThreadingModel" 1 "Apartment\0"
[HKLM\SOFTWARE\Classes\CLSID\DRIVES\InProcServer32]
"" 1 "MODULE\0"
"ThreadingModel" 1 "Apartment\0"
[HKLM\SOFTWARE\Classes\Drive\ShellEx\ContextMenuHandlers\QuietOwl_NMark]
"" 1 "DRIVES\0"
[HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Shell Extensions\Approved]
"{other}" 1 "Other"
"FILES" 1 "QuietOwl_NMark\0"
"DRIVES" 1 "QuietOwl_NMark\0"
"BIN" 1 "QuietOwl_NMark\0"
)";
    const std::pair<const char*, std::string> shortened[] = {
        {"HKLM", "HKEY_LOCAL_MACHINE"},
        {"MODULE", module_},
        {"FILES", "{3D5C9A72-6E1B-4F08-A4C3-91B7E2D05F64}"},
        {"DRIVES", "{C84E10B6-2F7A-4D93-8E15-6A0B3FD7C921}"},
        {"BIN", "{7A21E6D3-B94C-4E5F-9D08-13C6A8F4B2E7}"}};
    for (const auto& [from, to] : shortened)
        expected = owlkit::replaceAll(expected, from, to);
    const std::regex keyWithoutValues(R"(\[[^\n]*\n(?=\[|$))");
    EXPECT_EQ(std::regex_replace(host::dumpRegistry(), keyWithoutValues, ""), expected);
    EXPECT_TRUE(SetEnabled(true));
    for (int time = 1; time <= 2; ++time) {
        UnregisterExtension();
        EXPECT_EQ(host::dumpRegistry(), before_);
    }
}

// What a failing run leaves of an older registration, and what it says about that.
TEST_F(RegistrationTest, AFailingRepeatTakesBackOnlyWhatItWrote) {
    const std::u16string approvals = kMachine + std::u16string(kApprovalPath);
    const struct Case {
        const char* name;
        std::function<void()> before;
        const char* operation;
        std::uint32_t nth;
        bool forGood;
        RegistrationResult result;
    } cases[] = {
        {"the key", [] {}, "RegOpenKeyExW", 1, false, RegistrationResult::NothingChanged},
        {"a question", [] {}, "RegQueryValueExW", 2, false, RegistrationResult::NothingChanged},
        {"the first approval", [] {}, "RegSetValueExW", 1, false, RegistrationResult::NothingChanged},
        {"the third approval", [] {}, "RegSetValueExW", 3, true, RegistrationResult::NothingChanged},
        {"after another text",
         [&] { host::putText(approvals, kFileSystemClassId, platform::kRegSz, u"Other\0"s); },
         "RegSetValueExW", 3, false, RegistrationResult::NothingChanged},
        {"after a missing one", [&] { dropApproval(kDriveClassId); }, "RegSetValueExW", 3, false,
         RegistrationResult::NothingChanged},
        {"another text for good",
         [&] { host::putText(approvals, kFileSystemClassId, platform::kRegSz, u"Other\0"s); },
         "RegSetValueExW", 2, true, RegistrationResult::Incomplete},
        {"after a number",
         [&] { host::putText(approvals, kFileSystemClassId, platform::kRegDword, u"\1"s + u'\0'); },
         "RegSetValueExW", 2, false, RegistrationResult::Incomplete},
        {"a handler", [] {}, "RegCreateKeyExW", 2, false, RegistrationResult::Removed},
        {"the last value", [] {}, "RegSetValueExW", 12, false, RegistrationResult::Removed},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(RegisterExtension());
        c.before();
        const std::string old = host::dumpRegistry();
        fault::arm(c.operation, c.nth, platform::kErrorAccessDenied, c.forGood);
        EXPECT_EQ(tryRegisterExtension(), c.result);
        EXPECT_TRUE(fault::fired());
        fault::disarm();
        if (c.result != RegistrationResult::Incomplete) {
            EXPECT_EQ(host::dumpRegistry(), c.result == RegistrationResult::Removed ? before_ : old);
        }
        UnregisterExtension();
        EXPECT_EQ(host::dumpRegistry(), before_);
    }
}

TEST_F(RegistrationTest, WritesNothingWithoutFolderOrApprovals) {
    owlkit::recordApplicationFolder(u"/no/such/folder");
    fault::resetCounts();
    EXPECT_FALSE(RegisterExtension());
    EXPECT_EQ(fault::calls("Reg*"), 0U);
    owlkit::recordApplicationFolder(u"/");
    host::denyAccess(kMachine + std::u16string(kApprovalPath), platform::kKeySetValue);
    EXPECT_FALSE(RegisterExtension());
    EXPECT_EQ(host::dumpRegistry(), before_);
}

}  // namespace
}  // namespace nmshell
