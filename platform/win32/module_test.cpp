#include "platform/module.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/win32/win32_api.h"

namespace platform {
namespace {

// Against the system's answer into ample room: modules whose paths are about as long as the first room, and
// far longer.
TEST(Module, HasAFileNameOfAnyLength) {
    constexpr DWORD kRoom = 2000;
    wchar_t program[kRoom], temporary[MAX_PATH];
    ASSERT_NE(GetModuleFileNameW(nullptr, program, kRoom), 0u);
    ASSERT_NE(GetTempPathW(MAX_PATH, temporary), 0u);
    std::vector<std::wstring> folders = {std::wstring(L"\\\\?\\") + temporary};
    for (const std::size_t length : {200u, 259u, 260u, 261u, 263u, 264u, 265u, 700u}) {
        SCOPED_TRACE(length);
        while (length - folders.back().size() > 200) {
            folders.push_back(folders.back() + std::wstring(50, L'd') + L'\\');
            CreateDirectoryW(folders.back().c_str(), nullptr);
        }
        const std::wstring name(length - folders.back().size() - 4, L'f');
        const std::wstring file = folders.back() + name + L".dll";
        ASSERT_TRUE(CopyFileW(program, file.c_str(), FALSE));
        const HMODULE module = LoadLibraryExW(file.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
        ASSERT_TRUE(module);
        std::u16string expected(kRoom, u'\0');
        expected.resize(GetModuleFileNameW(module, wide(expected.data()), kRoom));
        EXPECT_GE(expected.size() + 4, length);
        EXPECT_EQ(moduleFileName(module), expected);
        FreeLibrary(module);
        EXPECT_TRUE(DeleteFileW(file.c_str()));
    }
    for (; folders.size() > 1; folders.pop_back())
        EXPECT_TRUE(RemoveDirectoryW(folders.back().c_str()));
}

}  // namespace
}  // namespace platform
