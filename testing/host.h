// For tests over the stand-ins: every stand-in at its start, an empty current folder, and at the end nothing
// left open.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "comserver/identifiers.h"
#include "platform/host/all_host.h"
#include "platform/host/utf8.h"
#include "platform/registry.h"
#include "testing/faults.h"
#include "testing/temporary.h"

namespace test {

namespace fault = platform::fault;
namespace host = platform::host;

class HostTest : public testing::Test {
  public:
    HostTest();
    ~HostTest() override;

    // The current folder, which is that of temporary files too; with a separator at the end.
    std::u16string folder() const { return folder_.name(); }
    void makeFile(const char* name, std::string_view content = "") const { folder_.write(name, content); }
    static void expectNothingOpen();
    // The last start of a program or page: verb, file and parameters, parted by bars.
    static std::u16string lastStart();

  private:
    const TemporaryFolder folder_;
};

// The keys of the approval and of the user's settings, as the stand-in names them.
inline const std::u16string kApprovals = u"HKEY_LOCAL_MACHINE\\" + std::u16string(nmshell::kApprovalPath);
inline const std::u16string kSettings = u"HKEY_CURRENT_USER\\" + std::u16string(nmshell::kSettingsPath);

// The text of the approval, and values of the user's settings.
void approve(std::u16string_view text = nmshell::kHandlerName);
void set(const char16_t* name, std::u16string_view text, std::uint32_t type = platform::kRegSz);
void setFlag(const char16_t* name, bool on);

// The keys and values of the registry below a root ("[HKEY_CURRENT_USER"), each value as a line of its own
// with its key in front.
std::set<std::string> registryLines(std::string_view root);

// A machine with other extensions.
void putOtherExtensions();

// A drop list and the data object that hands it out.
struct Drop {
    explicit Drop(std::vector<host::DropItem> items) : global(host::makeDropList(std::move(items))) {}
    ~Drop() { host::freeDropList(global); }

    void* global;
    host::DataObject data{global};
};

}  // namespace test
