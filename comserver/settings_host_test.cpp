#include "comserver/settings.h"

#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;
using namespace std::string_literals;

class SettingsTest : public HostTest {
  protected:
    SettingsTest() { approve(); }
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
    EXPECT_TRUE(SetLanguageSetting(u"Deutsch"));
    EXPECT_EQ(GetLanguageSetting(), u"Deutsch");
    for (const bool on : {false, true}) {
        EXPECT_TRUE(SetEnabled(on));
        EXPECT_TRUE(SetShowIcons(on));
        EXPECT_EQ(IsEnabled(), on);
        EXPECT_EQ(ShowIcons(), on);
    }
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
    const auto walk = [](auto gaveDefault) {
        walkFaults("Reg*", platform::kErrorAccessDenied, [&] {
            const bool given = gaveDefault();
            EXPECT_EQ(given, fault::fired());
        });
    };
    walk([] { return ShowIcons(); });
    walk([] { return GetLanguageSetting().empty(); });
    walk([] { return !IsApproved(); });
    walk([] { return !SetLanguageSetting(u"de"); });
    // What cannot be read leaves on; an approval that cannot be read is none.
    host::denyAccess(kSettings, platform::kKeyQueryValue);
    EXPECT_TRUE(IsEnabled());
    host::denyAccess(kApprovals, platform::kKeyQueryValue);
    EXPECT_FALSE(IsEnabled());
}

}  // namespace
}  // namespace nmshell
