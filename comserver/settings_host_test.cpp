#include "comserver/settings.h"

#include <gtest/gtest.h>

#include "comserver/identifiers.h"
#include "platform/host/fault.h"
#include "platform/host/registry_host.h"

namespace nmshell {
namespace {

namespace host = platform::host;
namespace fault = platform::fault;
using namespace std::string_literals;

constexpr const char16_t* kSettings = u"HKEY_CURRENT_USER\\Software\\NMark Shell";

class SettingsTest : public ::testing::Test {
  protected:
    SettingsTest() {
        host::resetRegistry();
        approve(u"QuietOwl_NMark\0"s);
    }
    ~SettingsTest() override {
        fault::disarm();
        EXPECT_EQ(host::openKeyCount(), 0U);
        host::resetRegistry();
    }

    static void approve(const std::u16string& text) {
        const std::u16string path = u"HKEY_LOCAL_MACHINE\\" + std::u16string(kApprovalPath);
        host::putText(path, kFileSystemClassId, platform::kRegSz, text);
    }
};

TEST_F(SettingsTest, ApprovalIsTheExactName) {
    const struct Case {
        const char* name;
        std::u16string text;
        bool approved;
    } cases[] = {{"as written", u"QuietOwl_NMark\0"s, true},
                 {"without NUL", u"QuietOwl_NMark", true},
                 {"trailing blank", u"QuietOwl_NMark \0"s, false},
                 {"two NULs", u"QuietOwl_NMark\0\0"s, false},
                 {"other case", u"quietowl_nmark\0"s, false}};
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        approve(row.text);
        EXPECT_EQ(IsEnabled(), row.approved);
        EXPECT_EQ(SetShowIcons(true), row.approved);
        EXPECT_TRUE(ShowIcons());
    }
    host::resetRegistry();
    EXPECT_FALSE(IsApproved());
    EXPECT_FALSE(SetEnabled(true));
    EXPECT_FALSE(SetShowIcons(true));
    EXPECT_FALSE(SetLanguageSetting(u"de"));
    EXPECT_EQ(host::dumpRegistry().find("NMark Shell"), std::string::npos);
}

TEST_F(SettingsTest, OnlyTheRightTypeCounts) {
    const struct Case {
        const char* name;
        std::uint32_t type;
        std::string bytes;
        bool on;
        const char16_t* language;
    } cases[] = {{"0", 4, "\0\0\0\0"s, false, u""},
                 {"5", 4, "\5\0\0\0"s, true, u""},
                 {"0x100", 4, "\0\1\0\0"s, true, u""},
                 {"short number", 4, "\0\0"s, true, u""},
                 {"64-bit 0", 11, std::string(8, '\0'), true, u""},
                 {"binary 0", 3, "\0\0\0\0"s, true, u""},
                 {"text 0", 1, "0\0\0\0"s, true, u"0"},
                 {"text of odd size", 1, "d\0e\0!"s, true, u"de"},
                 {"text of seven", 1, "D\0e\0u\0t\0s\0c\0h\0"s, true, u"Deutsch"},
                 {"longer text of odd size", 1, "D\0e\0u\0t\0s\0c\0h\0 \0\0\0!"s, true, u"Deutsch "},
                 {"longer binary", 3, "0\0000000000000000"s, true, u""},
                 {"long number", 4, "\0\0\0\0\0\0\0\0"s, true, u""},
                 {"expandable text", 2, "d\0e\0\0\0"s, true, u""}};
    EXPECT_TRUE(IsEnabled()) << "without a settings key";
    EXPECT_TRUE(ShowIcons()) << "without a settings key";
    EXPECT_TRUE(GetLanguageSetting().empty()) << "without a settings key";
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        for (const char16_t* name : {u"Enabled", u"Icons", u"Language"})
            host::putValue(kSettings, name, row.type, row.bytes);
        EXPECT_EQ(IsEnabled(), row.on);
        EXPECT_EQ(ShowIcons(), row.on);
        EXPECT_EQ(GetLanguageSetting(), row.language);
    }
}

TEST_F(SettingsTest, WritersAreReadBack) {
    EXPECT_TRUE(SetEnabled(false));
    EXPECT_TRUE(SetShowIcons(false));
    EXPECT_TRUE(SetLanguageSetting(u"Deutsch"));
    EXPECT_FALSE(IsEnabled());
    EXPECT_FALSE(ShowIcons());
    EXPECT_EQ(GetLanguageSetting(), u"Deutsch");
    EXPECT_TRUE(SetEnabled(true));
    EXPECT_TRUE(SetShowIcons(true));
    EXPECT_NE(host::dumpRegistry().find("\"Enabled\" 4 01000000\n\"Icons\" 4 01000000\n"), std::string::npos);
    EXPECT_FALSE(SetLanguageSetting(std::u16string(8191, u'x')));
    host::denyAccess(kSettings, platform::kKeySetValue);
    EXPECT_FALSE(SetEnabled(false));
    EXPECT_TRUE(IsEnabled());
}

TEST_F(SettingsTest, OpensEachKeyOnce) {
    for (const bool keyExists : {false, true}) {
        if (keyExists)
            host::putKey(kSettings);
        fault::resetCounts();
        ShellSettings settings;
        EXPECT_TRUE(settings.isEnabled());
        EXPECT_TRUE(settings.showIcons());
        EXPECT_TRUE(settings.language().empty());
        EXPECT_EQ(fault::calls("RegOpenKeyExW"), 2U);  // the approval and the settings
        EXPECT_EQ(fault::calls("RegQueryValueExW"), keyExists ? 4U : 1U);
    }
}

TEST_F(SettingsTest, EveryFailingCallGivesADefault) {
    ASSERT_TRUE(SetEnabled(false));
    ASSERT_TRUE(SetShowIcons(false));
    ASSERT_TRUE(SetLanguageSetting(u"de"));
    const auto walk = [](auto fails) {
        for (std::uint32_t n = 1;; ++n) {
            fault::arm("Reg*", n, platform::kErrorAccessDenied);
            const bool failed = fails();
            if (!fault::fired())
                return n > 1;
            EXPECT_TRUE(failed) << "call " << n;
        }
    };
    EXPECT_TRUE(walk([] { return ShowIcons(); }));
    EXPECT_TRUE(walk([] { return GetLanguageSetting().empty(); }));
    EXPECT_TRUE(walk([] { return !IsApproved(); }));
    EXPECT_TRUE(walk([] { return !SetLanguageSetting(u"de"); }));
    // The approval's two calls come first: their failures switch off, later ones leave on.
    std::uint32_t offs = 0;
    EXPECT_TRUE(walk([&] { return IsEnabled() || ++offs <= 2; }));
}

}  // namespace
}  // namespace nmshell
