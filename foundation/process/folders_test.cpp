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

std::u16string folderOf(FolderCode code) {
    std::u16string folder = u"before";
    const bool found = getFolder(code, folder);
    EXPECT_EQ(found, !folder.empty());
    return folder;
}

TEST(Folders, RefusesUnknownCodes) {
    for (const std::uint32_t code : {10u, 11u, 256u, 0xFFFFFFFFu})
        EXPECT_EQ(folderOf(FolderCode{code}), u"");
}

TEST(Folders, ApplicationFolderIsTheRecordedOneIfItExists) {
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "x";
    const std::u16string expected = (folder / "").u16string();
    recordApplicationFolder(folder.path().u16string());
    EXPECT_EQ(folderOf(FolderCode::Application), expected);
    recordApplicationFolder(expected);
    EXPECT_EQ(folderOf(FolderCode::Application), expected);
    recordApplicationFolder((folder / "missing").u16string());
    EXPECT_EQ(folderOf(FolderCode::Application), u"");
    recordApplicationFolder((folder / "file").u16string());
    EXPECT_EQ(folderOf(FolderCode::Application), u"");
    recordApplicationFolder(u"");
    const std::u16string program = platform::moduleFileName(nullptr);
    EXPECT_EQ(folderOf(FolderCode::Application),
              program.substr(0, program.rfind(platform::kPathSeparator) + 1));
}

TEST(Folders, CurrentAndTemporaryFolderEndInASeparator) {
    EXPECT_EQ(folderOf(FolderCode::Current), (std::filesystem::current_path() / "").u16string());
    EXPECT_EQ(folderOf(FolderCode::Temporary), (std::filesystem::temp_directory_path() / "").u16string());
    EXPECT_EQ(folderOf(FolderCode::TemporaryFiles), folderOf(FolderCode::Temporary));
}

}  // namespace
}  // namespace owlkit
