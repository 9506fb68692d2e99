#include "platform/shell.h"

#include <gtest/gtest.h>

#include "platform/win32/win32_api.h"

#include <shellapi.h>
#include <shlobj.h>

#include <cstring>

namespace platform {
namespace {

// A CF_HDROP block with these bytes after its header; `offset` is where the header says that the paths begin.
class DropMemory {
  public:
    DropMemory(const void* paths, std::size_t size, bool isWide, std::size_t offset = sizeof(DROPFILES))
        : handle_(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, offset + size)) {
        DROPFILES header = {};
        header.pFiles = static_cast<DWORD>(offset);
        header.fWide = isWide;
        char* bytes = static_cast<char*>(GlobalLock(handle_));
        std::memcpy(bytes, &header, sizeof(header));
        std::memcpy(bytes + offset, paths, size);
        GlobalUnlock(handle_);
    }
    ~DropMemory() {
        EXPECT_EQ(GlobalFlags(handle_) & GMEM_LOCKCOUNT, 0u) << "a list that is gone still locks it";
        GlobalFree(handle_);
    }
    DropMemory(const DropMemory&) = delete;
    DropMemory& operator=(const DropMemory&) = delete;

    HGLOBAL handle() const { return handle_; }

  private:
    HGLOBAL handle_;
};

// The paths must be those that the system's own walk gives.
void expectSystemAnswers(HGLOBAL memory) {
    const HDROP drop = static_cast<HDROP>(memory);
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    std::u16string expected;
    for (UINT i = 0; i < count; ++i) {
        std::u16string path(DragQueryFileW(drop, i, nullptr, 0) + 1, u'#');
        DragQueryFileW(drop, i, wide(path.data()), static_cast<UINT>(path.size()));
        expected += path;
    }
    const DropList list = readDropList(memory);
    EXPECT_EQ(list.count, count);
    EXPECT_EQ(list.paths, expected);
}

TEST(DropList, AnswersAsTheSystemDoes) {
    std::u16string longPaths;
    for (std::size_t i = 0; i < 40; ++i)
        longPaths += u"C:\\" + std::u16string(i * 17 % 400 + 1, static_cast<char16_t>(u'a' + i % 26)) + u'\0';
    const std::u16string kLists[] = {std::u16string(u"C:\\a b.txt\0", 11),
                                     std::u16string(u"C:\\\u00E9\u4E2D\xD83D\xDE00\0D:\\x\0E:\\\0", 17),
                                     std::u16string(u"a\0b\0c\0", 6), longPaths};
    for (const std::u16string& paths : kLists) {
        const std::u16string whole = paths + u'\0';
        const std::size_t size = whole.size() * sizeof(char16_t);
        expectSystemAnswers(DropMemory(whole.data(), size, true).handle());
        expectSystemAnswers(DropMemory(whole.data(), size, true, sizeof(DROPFILES) + 7).handle());
    }
    const char kAnsi[] = "C:\\a b.txt\0D:\\caf\xE9\0E:\\\x80\0";
    expectSystemAnswers(DropMemory(kAnsi, sizeof(kAnsi), false).handle());
}

// The memory's own size is the limit, and an offset far behind it is no address.
TEST(DropList, NeverReadsBehindTheBlock) {
    const std::u16string paths(u"ab\0cd", 5);
    const DropMemory memory(paths.data(), 10, true);
    ASSERT_EQ(GlobalSize(memory.handle()), sizeof(DROPFILES) + 10);
    const DropList list = readDropList(memory.handle());
    EXPECT_EQ(list.count, 2u);  // the second path has no end
    EXPECT_EQ(list.paths, paths.substr(0, 3));
    const DropMemory beyond("", 0, true, 4000);
    static_cast<DROPFILES*>(GlobalLock(beyond.handle()))->pFiles = 0xFFFFFFFF;
    GlobalUnlock(beyond.handle());
    EXPECT_EQ(readDropList(beyond.handle()).count, 0u);
    EXPECT_EQ(readDropList(nullptr).count, 0u);
}

}  // namespace
}  // namespace platform
