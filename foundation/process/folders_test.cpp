#include "foundation/process/folders.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/file.h"
#include "platform/module.h"
#include "testing/echo_child.h"
#include "testing/temporary.h"

namespace owlkit {
namespace {

using namespace test;

std::u16string folderOf(std::uint32_t code) {
    std::u16string folder = u"before";
    const bool found = getFolder(code, folder);
    EXPECT_EQ(found, !folder.empty());
    return folder;
}

TEST(Folders, RefusesUnknownCodes) {
    for (const std::uint32_t code : {10u, 11u, 256u, 0xFFFFFFFFu})
        EXPECT_EQ(folderOf(code), u"");
}

TEST(Folders, ApplicationFolderIsTheRecordedOneIfItExists) {
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "x";
    const std::u16string expected = (folder / "").u16string();
    recordApplicationFolder(folder.path().u16string());
    EXPECT_EQ(folderOf(kFolderApplication), expected);
    recordApplicationFolder(expected);
    EXPECT_EQ(folderOf(kFolderApplication), expected);
    recordApplicationFolder((folder / "missing").u16string());
    EXPECT_EQ(folderOf(kFolderApplication), u"");
    recordApplicationFolder((folder / "file").u16string());
    EXPECT_EQ(folderOf(kFolderApplication), u"");
    recordApplicationFolder(u"");
    const std::u16string program = platform::moduleFileName(nullptr);
    EXPECT_EQ(folderOf(kFolderApplication), program.substr(0, program.rfind(platform::kPathSeparator) + 1));
}

TEST(Folders, CurrentAndTemporaryFolderEndInASeparator) {
    EXPECT_EQ(folderOf(kFolderCurrent), (std::filesystem::current_path() / "").u16string());
    EXPECT_EQ(folderOf(kFolderTemporary), (std::filesystem::temp_directory_path() / "").u16string());
    EXPECT_EQ(folderOf(kFolderTemporaryFiles), folderOf(kFolderTemporary));
}

}  // namespace
}  // namespace owlkit
