#include "contextmenu/menu_facts.h"

#include "testing/host.h"

namespace nmshell {
namespace {

using namespace test;
using MenuFactsTest = HostTest;

TEST_F(MenuFactsTest, KnowTheSystemDriveAndAskForItOnce) {
    const struct Case {
        const char* name;
        std::optional<std::u16string> windows;
        bool onZ;
    } cases[] = {
        {"on Z", u"z:\\w", true},
        {"as long as fits", u"Z:\\" + std::u16string(252, u'w'), true},
        {"too long", u"Z:\\" + std::u16string(253, u'w'), false},
        {"elsewhere", u"E:\\", false},
        {"empty", u"", false},
        {"unknown", std::nullopt, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host::setWindowsDirectory(c.windows);
        fault::resetCounts();
        SystemDrive drive;
        EXPECT_EQ(drive.holds(u"\\\\?\\Z:\\x"), c.onZ);
        EXPECT_TRUE(drive.holds(u"\\\\server\\share"));
        EXPECT_TRUE(drive.holds(u""));
        EXPECT_FALSE(drive.holds(u"D:\\"));
        EXPECT_EQ(fault::calls("GetWindowsDirectoryW"), 1u);
    }
}

}  // namespace
}  // namespace nmshell
