#include <gtest/gtest.h>

#include "platform/win32/win32_api.h"

#include <fstream>

#include "foundation/process/folders.h"
#include "foundation/process/shell_run.h"
#include "testing/echo_child.h"
#include "testing/temporary.h"

namespace owlkit {
namespace {

using namespace test;

// Puts a tree of this test in the place of HKEY_CLASSES_ROOT, for this process; the system's own handlers
// stay as they are.
class TestClasses {
  public:
    TestClasses() {
        EXPECT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, kPath, &root_), ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, root_), ERROR_SUCCESS);
    }
    ~TestClasses() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegCloseKey(root_);
        RegDeleteTreeW(HKEY_CURRENT_USER, kPath);
    }

    void set(const std::u16string& key, const wchar_t* name, const std::u16string& text) const {
        const DWORD size = static_cast<DWORD>((text.size() + 1) * sizeof(char16_t));
        EXPECT_EQ(RegSetKeyValueW(root_, platform::wide(key), name, REG_SZ, text.c_str(), size),
                  ERROR_SUCCESS);
    }

  private:
    static constexpr const wchar_t* kPath = L"Software\\Owlkit test classes";
    HKEY root_ = nullptr;
};

// What the started child saved. A file that is there already may still be held by the child or be without its
// end, a closing bracket: so it is opened again until it is whole, for ten seconds at most.
std::string saved(const std::filesystem::path& file) {
    std::string text;
    for (int i = 0; i < 200 && !text.ends_with(']'); ++i) {
        Sleep(i == 0 ? 0 : 50);
        text = fileBytes(file);
    }
    // The child may hold it for a moment longer.
    std::error_code error;
    for (int i = 0; i < 200 && std::filesystem::exists(file) && !std::filesystem::remove(file, error); ++i)
        Sleep(50);
    return text;
}

TEST(ShellRun, ReturnsTheExitCode) {
    const TemporaryFolder folder;
    const std::filesystem::path copy = folder / "echo child.exe";
    std::filesystem::copy_file(echoChild(), copy);
    EXPECT_EQ(runShell(echoChild(), u"exit 7", true), 7);
    EXPECT_EQ(runShell(copy.u16string(), u"exit -5", true), -5);
    EXPECT_EQ(runShell(copy.u16string(), u"", true), 99);
    EXPECT_EQ(runShell(echoChild(), u"exit 7", false), 0);
    EXPECT_EQ(runShell((folder / "missing.exe").u16string(), u"", true), -1);
}

// What a kind allows is the same on both sides.
TEST(ShellRun, OpensWithTheHandler) {
    const TemporaryFolder folder;
    const std::filesystem::path output = folder / "output";
    const std::filesystem::path document = folder / "a b.owlkittest";
    std::ofstream(document) << "text";
    const std::u16string save = u"\"" + echoChild() + u"\" save \"" + output.u16string() + u"\" \"%1\"";
    const TestClasses classes;  // of a protocol and a type of documents
    for (const std::u16string name : {u"owlkittest", u"owlkittest.document"}) {
        classes.set(name, L"URL Protocol", u"");
        classes.set(name + u"\\shell\\open\\command", nullptr, save);
    }
    classes.set(u".owlkittest", nullptr, u"owlkittest.document");

    EXPECT_TRUE(openWithShell(OpenKind::FileOrUrl, u"owlkittest://host/page?x=1"));
    EXPECT_EQ(saved(output), "[owlkittest://host/page?x=1]");
    EXPECT_TRUE(openWithShell(OpenKind::FileOrUrl, document.u16string()));
    EXPECT_EQ(saved(output), "[" + document.string() + "]");
    EXPECT_FALSE(openWithShell(OpenKind::FileOrUrl, document.u16string() + u".missing"));
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST(Folders, AreAllThereAndEndInASeparator) {
    for (std::uint32_t code = 0; code <= 9; ++code) {
        SCOPED_TRACE(code);
        std::u16string folder;
        EXPECT_TRUE(getFolder(FolderCode{code}, folder));
        EXPECT_TRUE(folder.ends_with(u'\\'));
        EXPECT_TRUE(std::filesystem::is_directory(folder));
    }
}

}  // namespace
}  // namespace owlkit
