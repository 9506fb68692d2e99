#include "platform/file.h"

#include <gtest/gtest.h>

#include "platform/win32/win32_api.h"
#include "testing/imports_win32.h"
#include "testing/temporary.h"

// The entries of this program's import table.
extern "C" {
extern void* __imp_CreateFileW;
extern void* __imp_DeviceIoControl;
extern void* __imp_WriteFile;
}

namespace platform {
namespace {

using dll_tests::Replaced;

BOOL failWithoutCode() {
    SetLastError(ERROR_SUCCESS);
    return FALSE;
}
HANDLE openNothingWithoutCode() {
    SetLastError(ERROR_SUCCESS);
    return INVALID_HANDLE_VALUE;
}

// Drivers may refuse without saying why. A volume whose length cannot be asked must not count as reachable.
TEST(PlatformFileWin32, AFailureWithoutACodeIsAFailure) {
    const test::TemporaryFile target("x");
    FileHandle file;
    std::int64_t size = -1;
    std::uint32_t moved = 1;
    {
        const Replaced call(__imp_CreateFileW, reinterpret_cast<void*>(&openNothingWithoutCode));
        EXPECT_NE(createFile(target.name(), kGenericWrite, 0, kOpenExisting, 0, file), kSuccess);
        EXPECT_FALSE(file);
    }
    ASSERT_EQ(createFile(target.name(), kGenericWrite, 0, kOpenExisting, 0, file), kSuccess);
    {
        const Replaced call(__imp_DeviceIoControl, reinterpret_cast<void*>(&failWithoutCode));
        EXPECT_NE(diskLength(file, size), kSuccess);
        EXPECT_EQ(size, -1);
    }
    const Replaced call(__imp_WriteFile, reinterpret_cast<void*>(&failWithoutCode));
    EXPECT_NE(writeFile(file, "abc", 3, moved), kSuccess);
    EXPECT_EQ(moved, 0u);
}

}  // namespace
}  // namespace platform
