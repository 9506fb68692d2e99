#include "platform/file.h"

#include <algorithm>
#include <fstream>

#include "testing/streams.h"

namespace platform {
namespace {

using test::TemporaryFile;

const std::u16string kLongPathPrefix = kPathSeparator == u'\\' ? u"\\\\?\\" : u"";

TEST(PlatformFile, ListsTheFilesOfAFolder) {
    const TemporaryFile unique;  // only for its name
    const std::filesystem::path folder = unique.path();
    std::filesystem::create_directories(folder / "sub");
    for (const char16_t* name : {u"b.txt", u"\u00E9\u4E2D.lang.txt"})
        std::ofstream(folder / name) << "x";
    for (const std::u16string& spelling : {folder.u16string(), folder.u16string() + kPathSeparator}) {
        auto names = listFolder(spelling);
        ASSERT_TRUE(names);
        std::ranges::sort(*names);
        EXPECT_EQ(*names, (std::vector<std::u16string>{u"b.txt", u"\u00E9\u4E2D.lang.txt"}));
    }
    EXPECT_EQ(fileAttributes(folder.u16string()) & kFileAttributeDirectory, kFileAttributeDirectory);
    EXPECT_EQ(deleteFile(folder.u16string()), kErrorAccessDenied);
    FileHandle file;
    EXPECT_EQ(createFile(folder.u16string(), kGenericRead, 0, kOpenExisting, 0, file), kErrorAccessDenied);
    const std::u16string path = (folder / "b.txt").u16string();
    EXPECT_EQ(deleteFile(path), kSuccess);
    EXPECT_EQ(deleteFile(path), kErrorFileNotFound);
    EXPECT_EQ(fileAttributes(path), kInvalidFileAttributes);
    EXPECT_EQ(createFile(path, kGenericRead, 0, kOpenExisting, 0, file), kErrorFileNotFound);
    std::filesystem::remove_all(folder);
    EXPECT_EQ(listFolder(folder.u16string()), std::nullopt);
}

// Names that the system's short path buffers do not hold, in the spellings in which they come.
TEST(PlatformFile, LongPathsAreOrdinaryPaths) {
    const TemporaryFile unique;
    std::vector<std::u16string> folders = {unique.name()};
    const std::u16string level(60, u'\u00E9');
    for (int i = 0; i < 5; ++i)
        folders.push_back(folders.back() + kPathSeparator + level);
    const std::u16string folder = folders.back();
    std::filesystem::create_directories(kLongPathPrefix + folder);
    const std::u16string up = folder + kPathSeparator + u".." + kPathSeparator + level;
    std::u16string slashes = folder;
    std::ranges::replace(slashes, kPathSeparator, u'/');
    for (const std::u16string& spelling :
         {folder, up, slashes, folder + kPathSeparator, kLongPathPrefix + folder}) {
        SCOPED_TRACE(testing::PrintToString(spelling));
        const std::u16string path = spelling + kPathSeparator + u"file.txt";
        FileHandle file;
        EXPECT_EQ(createFile(path, kGenericWrite, 0, kCreateNew, 0, file), kSuccess);
        file.reset();
        EXPECT_EQ(fileAttributes(path) & kFileAttributeDirectory, 0u);
        EXPECT_EQ(fileAttributes(spelling) & kFileAttributeDirectory, kFileAttributeDirectory);
        EXPECT_EQ(listFolder(spelling), std::vector<std::u16string>{u"file.txt"});
        EXPECT_EQ(deleteFile(path), kSuccess);
        EXPECT_EQ(fileAttributes(path), kInvalidFileAttributes);
    }
    for (; !folders.empty(); folders.pop_back())
        EXPECT_TRUE(std::filesystem::remove(kLongPathPrefix + folders.back()));
}

TEST(PlatformFile, ReadOnlyFilesStay) {
    const TemporaryFile target;
    FileHandle file;
    std::uint32_t moved = 0;
    ASSERT_EQ(createFile(target.name(), kGenericWrite, 0, kCreateAlways, kFileAttributeReadOnly, file),
              kSuccess);
    EXPECT_EQ(writeFile(file, "abc", 3, moved), kSuccess);
    EXPECT_EQ(readFile(file, &moved, 1, moved), kErrorAccessDenied);
    file.reset();
    EXPECT_EQ(deleteFile(target.name()), kErrorAccessDenied);
    std::filesystem::permissions(target.path(), std::filesystem::perms::all);
    EXPECT_EQ(deleteFile(target.name()), kSuccess);
}

TEST(PlatformFile, FoldersMustFitTheBuffer) {
    for (const auto call : {tempPath, currentDirectory}) {
        const std::u16string folder = call(4096).value_or(u"");
        ASSERT_FALSE(folder.empty());
        EXPECT_EQ(call(folder.size() + 1), folder);
        EXPECT_FALSE(call(folder.size()).has_value());
    }
}

}  // namespace
}  // namespace platform
