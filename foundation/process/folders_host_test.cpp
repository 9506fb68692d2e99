#include "foundation/process/folders.h"

#include "testing/host.h"

namespace owlkit {
namespace {

using namespace test;
using FoldersOnHost = HostTest;

TEST_F(FoldersOnHost, EveryCodeAsksItsSource) {
    for (const char* const name : {"application", "profile", "roaming", "local", "common"})
        std::filesystem::create_directory(name);
    recordApplicationFolder(folder() + u"application");
    setenv("USERPROFILE", platform::toHostName(folder() + u"profile").c_str(), 1);
    host::setFolderPath(26, folder() + u"roaming");
    host::setFolderPath(28, folder() + u"local");
    host::setFolderPath(35, folder() + u"common");
    const struct Case {
        std::uint32_t code;
        const char16_t* found;
        const char* call;
    } cases[] = {
        {0, u"application/", ""},  // the current folder cannot be had in this row
        {1, u"application/", "GetFileAttributesW"},
        {4, u"profile/", "GetEnvironmentVariableW"},
        {5, u"roaming/", "SHGetFolderPathW"},
        {6, u"roaming/", "SHGetFolderPathW"},
        {7, u"local/", "SHGetFolderPathW"},
        {8, u"common/", "SHGetFolderPathW"},
        {9, u"common/", "GetFileAttributesW"},
        {2, u"", "GetTempPathW"},
        {3, u"", "GetTempPathW"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code);
        std::u16string found = u"before";
        fault::arm(c.code == 0 ? "GetCurrentDirectoryW" : "", 1, platform::kErrorAccessDenied);
        EXPECT_TRUE(getFolder(FolderCode{c.code}, found));
        EXPECT_EQ(found, folder() + c.found);
        if (*c.call == '\0')
            continue;
        fault::arm(c.call, 1, platform::kErrorAccessDenied);
        EXPECT_FALSE(getFolder(FolderCode{c.code}, found));
        EXPECT_EQ(found, u"");
    }
}

}  // namespace
}  // namespace owlkit
