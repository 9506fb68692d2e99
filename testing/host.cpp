#include "testing/host.h"

#include <cstdlib>

#include "foundation/process/elevation.h"
#include "foundation/process/folders.h"

namespace test {

HostTest::HostTest() {
    std::filesystem::current_path(folder_.path());
    setenv("TMPDIR", folder_.path().c_str(), 1);
    host::resetAll();
    owlkit::forgetElevation();
    owlkit::recordApplicationFolder(u"");
}

HostTest::~HostTest() {
    fault::disarm();
    EXPECT_EQ(host::userInterface().liveMenus, 0);
    EXPECT_EQ(host::userInterface().liveBitmaps, 0);
    EXPECT_EQ(host::openHandleCount(), 0u);
    EXPECT_EQ(host::openKeyCount(), 0u);
    EXPECT_EQ(host::openFileCount(), 0);
    unsetenv("TMPDIR");
    std::filesystem::current_path("/");
}

std::u16string HostTest::lastStart() {
    const host::ShellStart& start = host::shellStarts().back();
    EXPECT_EQ(start.show, 1);
    EXPECT_FALSE(start.hasFolder);
    return start.verb + u'|' + start.file + u'|' + start.parameters;
}

}  // namespace test
