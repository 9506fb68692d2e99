// For tests on the host: every stand-in at its start, an empty current folder, and at the end nothing left
// open.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/process/elevation.h"
#include "foundation/process/folders.h"
#include "platform/host/com_control.h"
#include "platform/host/fault.h"
#include "platform/host/file_record.h"
#include "platform/host/locale_control.h"
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
        resetStandIns();
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        std::filesystem::current_path(folder_);
        setenv("TMPDIR", folder_.c_str(), 1);
    }

    ~HostTest() override {
        EXPECT_EQ(host::userInterface().liveMenus, 0);
        EXPECT_EQ(host::userInterface().liveBitmaps, 0);
        EXPECT_EQ(platform::openFileCount(), 0);
        EXPECT_EQ(platform::openHandleCount(), 0u);
        EXPECT_EQ(platform::registry_control::openHandles(), 0u);
        resetStandIns();
        std::filesystem::current_path(std::filesystem::temp_directory_path().root_path());
        std::filesystem::remove_all(folder_);
        unsetenv("TMPDIR");
    }

    static void resetStandIns() {
        fault::disarm();
        fault::resetCounts();
        platform::registry_control::reset();
        platform::resetShell();
        platform::resetModules();
        host::resetLocale();
        host::userInterface() = {};
        host::releasedMedia() = 0;
        platform::tokenRecord() = {};
        owlkit::forgetElevation();
        owlkit::recordApplicationFolder(u"");
    }

    std::u16string folder() const { return folder_.u16string() + u"/"; }

    static void makeFile(const std::filesystem::path& name, std::string_view text = {}) {
        std::filesystem::create_directories(std::filesystem::absolute(name).parent_path());
        std::ofstream(name, std::ios::binary) << text;
    }

  private:
    // Tests run side by side, each in a process of its own. The blank is there to be escaped.
    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() /
        (std::string("nmshell ") + testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() +
         '.' + testing::UnitTest::GetInstance()->current_test_info()->name());
};

// A drop list and the data object that hands it out.
struct Drop {
    explicit Drop(std::vector<platform::DropItem> items)
        : global(platform::makeDropList(std::move(items))), data(global) {}
    ~Drop() { platform::freeDropList(global); }
    Drop(const Drop&) = delete;
    Drop& operator=(const Drop&) = delete;

    void* global;
    host::DataObject data;
};

}  // namespace nmshell
