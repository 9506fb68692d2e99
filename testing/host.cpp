#include "testing/host.h"

#include <cstdlib>
#include <sstream>

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
    expectNothingOpen();
    host::resetAll();
    unsetenv("TMPDIR");
    std::filesystem::current_path("/");
}

void HostTest::expectNothingOpen() {
    EXPECT_EQ(host::userInterface().liveMenus, 0);
    EXPECT_EQ(host::userInterface().liveBitmaps, 0);
    EXPECT_EQ(host::openHandleCount(), 0u);
    EXPECT_EQ(host::openKeyCount(), 0u);
    EXPECT_EQ(host::openFileCount(), 0);
}

std::u16string HostTest::lastStart() {
    const host::ShellStart& start = host::shellStarts().back();
    EXPECT_EQ(start.show, 1);
    EXPECT_FALSE(start.hasFolder);
    return start.verb + u'|' + start.file + u'|' + start.parameters;
}

void approve(std::u16string_view text) {
    host::putText(kApprovals, nmshell::kFileSystemClassId, platform::kRegSz, text);
}

void set(const char16_t* name, std::u16string_view text, std::uint32_t type) {
    host::putText(kSettings, name, type, text);
}

void setFlag(const char16_t* name, bool on) {
    set(name, {on ? u"\1" : u"\0", 2}, platform::kRegDword);
}

std::set<std::string> registryLines(std::string_view root) {
    std::istringstream dump(host::dumpRegistry());
    std::set<std::string> lines;
    std::string key;
    for (std::string line; std::getline(dump, line);) {
        if (line.starts_with('['))
            key = line;
        if (key.starts_with(root))
            lines.insert(line == key ? key : key + ' ' + line);
    }
    return lines;
}

void putOtherExtensions() {
    host::putText(kApprovals, u"{other}", platform::kRegSz, u"Other");
    for (const char16_t* const parent :
         {u"AllFileSystemObjects\\ShellEx\\ContextMenuHandlers\\Other",
          u"Drive\\ShellEx\\ContextMenuHandlers",
          u"CLSID\\{645FF040-5081-101B-9F08-00AA002F954E}\\ShellEx\\ContextMenuHandlers"})
        host::putKey(std::u16string(u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\") + parent);
    host::putKey(u"HKEY_CURRENT_USER\\Software");
}

}  // namespace test
