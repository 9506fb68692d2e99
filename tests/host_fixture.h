// For tests on the host: every stand-in at its start, an empty current folder, and at the end nothing left
// open.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "foundation/process/elevation.h"
#include "foundation/process/folders.h"
#include "platform/host/com_control.h"
#include "platform/host/fault.h"
#include "platform/host/file_record.h"
#include "platform/host/menu_control.h"
#include "platform/host/module_control.h"
#include "platform/host/process_control.h"
#include "platform/host/registry_control.h"
#include "platform/host/shell_control.h"
#include "platform/host/utf8.h"

namespace nmshell {

namespace fault = platform::fault;
namespace host = platform::host;

class HostTest : public testing::Test {
  protected:
    HostTest() {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
        std::filesystem::current_path(path_);
        setenv("TMPDIR", path_.c_str(), 1);
        fault::disarm();
        fault::resetCounts();
        platform::limitWrites({});
        platform::registry_control::reset();
        platform::resetShell();
        platform::resetModules();
        host::userInterface() = {};
        host::releasedMedia() = 0;
        platform::tokenRecord() = {};
        owlkit::forgetElevation();
        owlkit::recordApplicationFolder(u"");
    }
    ~HostTest() override {
        EXPECT_TRUE(host::userInterface().liveMenus == 0);
        EXPECT_TRUE(host::userInterface().liveBitmaps == 0);
        EXPECT_EQ(platform::openHandleCount() + platform::registry_control::openHandles(), 0u);
        EXPECT_EQ(platform::openFileCount(), 0);
        unsetenv("TMPDIR");
        std::filesystem::current_path("/");
        std::filesystem::remove_all(path_);
    }

    std::u16string folder() const { return path_.u16string() + u"/"; }
    static void makeFile(const char* name, const char* text = "") {
        std::ofstream(name, std::ios::binary) << text;
    }
    // The last start of a program or page: verb, file and parameters, parted by bars.
    static std::u16string lastStart() {
        const platform::ShellStart& start = platform::shellStarts().back();
        EXPECT_TRUE(start.show == 1);
        EXPECT_TRUE(!start.hasFolder);
        return start.verb + u'|' + start.file + u'|' + start.parameters;
    }

  private:
    // Tests run side by side, each in a process of its own. The blank is there to be escaped.
    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() /
        (std::string("nmshell ") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

// A drop list and the data object that hands it out.
struct Drop {
    explicit Drop(std::vector<platform::DropItem> items) : global(platform::makeDropList(std::move(items))) {}
    ~Drop() { platform::freeDropList(global); }

    void* global;
    host::DataObject data{global};
};

}  // namespace nmshell
