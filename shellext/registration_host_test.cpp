#include "shellext/registration.h"

#include <functional>
#include <regex>

#include "comserver/settings.h"
#include "foundation/process/folders.h"
#include "foundation/registry/registry_key.h"
#include "foundation/text/text.h"
#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;
using namespace std::string_view_literals;

class RegistrationTest : public HostTest {
  protected:
    RegistrationTest() {
        owlkit::recordApplicationFolder(folder());
        putOtherExtensions();
        before_ = host::dumpRegistry();
    }

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
        {"MODULE", platform::toHostName(folder()) + "nmshell.dll"},
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

// What a failing run leaves of an older registration's approvals, and what it says about that.
TEST_F(RegistrationTest, AFailingRepeatPutsTheApprovalsBack) {
    const auto put = [](std::uint32_t type, std::u16string_view text) {
        return [=] { host::putText(kApprovals, kFileSystemClassId, type, text); };
    };
    const auto drop = [] {
        EXPECT_TRUE(owlkit::RegistryKey::deleteValue(owlkit::RegistryRoot::LocalMachine,
                                                     std::u16string(kApprovalPath),
                                                     std::u16string(kDriveClassId)));
    };
    using enum RegistrationResult;
    const struct Case {
        const char* name;
        std::function<void()> before;
        std::uint32_t nth;  // value that cannot be written
        bool forGood;
        RegistrationResult result;
    } cases[] = {
        {"after another text", put(platform::kRegSz, u"Other\0"sv), 3, false, NothingChanged},
        {"after a missing one", drop, 3, false, NothingChanged},
        {"another text for good", put(platform::kRegSz, u"Other\0"sv), 2, true, Incomplete},
        {"after a number", put(platform::kRegDword, u"\1\0"sv), 2, false, Incomplete},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(RegisterExtension());
        c.before();
        const std::string old = host::dumpRegistry();
        fault::arm("RegSetValueExW", c.nth, platform::kErrorAccessDenied, c.forGood);
        EXPECT_EQ(tryRegisterExtension(), c.result);
        EXPECT_TRUE(fault::fired());
        fault::disarm();
        EXPECT_EQ(host::dumpRegistry() == old, c.result == NothingChanged);
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
    host::denyAccess(kApprovals, platform::kKeySetValue);
    EXPECT_FALSE(RegisterExtension());
    EXPECT_EQ(host::dumpRegistry(), before_);
}

}  // namespace
}  // namespace nmshell
