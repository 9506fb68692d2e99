#include <gtest/gtest.h>

#include <cstdlib>

#include "foundation/process/folders.h"
#include "platform/host/fault.h"
#include "platform/host/shell_host.h"
#include "testing/echo_child.h"
#include "testing/temporary.h"

namespace owlkit {
namespace {

using namespace test;
namespace host = platform::host;

TEST(FoldersOnHost, EveryCodeAsksItsSource) {
    const TemporaryFolder test;
    for (const char* const name : {"application", "profile", "roaming", "local", "common"})
        std::filesystem::create_directory(test / name);
    recordApplicationFolder((test / "application").u16string());
    setenv("USERPROFILE", (test / "profile").c_str(), 1);
    host::setFolderPath(26, (test / "roaming").u16string());
    host::setFolderPath(28, (test / "local").u16string());
    host::setFolderPath(35, (test / "common").u16string());
    const struct Case {
        std::uint32_t code;
        const char* folder;
        const char* call;
    } cases[] = {
        {0, "application", ""},  // the current folder cannot be had in this row
        {1, "application", "GetFileAttributesW"},
        {4, "profile", "GetEnvironmentVariableW"},
        {5, "roaming", "SHGetFolderPathW"},
        {6, "roaming", "SHGetFolderPathW"},
        {7, "local", "SHGetFolderPathW"},
        {8, "common", "SHGetFolderPathW"},
        {9, "common", "GetFileAttributesW"},
        {2, "", "GetTempPathW"},
        {3, "", "GetTempPathW"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        std::u16string folder = u"before";
        if (*c.folder != '\0') {
            platform::fault::arm(c.code == 0 ? "GetCurrentDirectoryW" : "", 1, platform::kErrorAccessDenied);
            EXPECT_TRUE(getFolder(FolderCode{c.code}, folder));
            EXPECT_EQ(folder, (test / c.folder / "").u16string());
        }
        if (*c.call != '\0') {
            platform::fault::arm(c.call, 1, platform::kErrorAccessDenied);
            EXPECT_FALSE(getFolder(FolderCode{c.code}, folder));
            EXPECT_EQ(folder, u"");
        }
    }
    platform::fault::disarm();
    host::resetShell();
    recordApplicationFolder(u"");
}

}  // namespace
}  // namespace owlkit
