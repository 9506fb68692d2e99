#include <functional>

#include "foundation/registry/registry_key.h"
#include "platform/host/fault.h"
#include "platform/host/registry_host.h"
#include "testing/registry.h"

namespace owlkit {
namespace {

using namespace test;
namespace host = platform::host;

namespace fault = platform::fault;

class RegistryHiveTest : public ::testing::Test {
  protected:
    RegistryHiveTest() { host::resetRegistry(); }
    ~RegistryHiveTest() override {
        fault::disarm();
        EXPECT_EQ(host::openKeyCount(), 0U);
        host::resetRegistry();
    }
};

TEST_F(RegistryHiveTest, AsksForTheRightsOfEachOperation) {
    const std::uint32_t viewFlags[] = {0, 0x200, 0x100, 0};  // the last view is none of ours
    for (std::uint32_t view = 0; view < 4; ++view) {
        SCOPED_TRACE(view);
        RegistryKey key;
        key.setView(static_cast<RegistryView>(view));
        const std::pair<bool, std::uint32_t> asked[] = {
            {key.create(kUser, u"k"), host::lastRegistryAccess()},
            {key.open(kUser, u"k", RegistryMode::ReadOnly), host::lastRegistryAccess()},
            {key.open(kUser, u"k", RegistryMode::ReadWrite), host::lastRegistryAccess()},
            {key.exists(kUser, u"k"), host::lastRegistryAccess()},
            {key.isWritable(kUser, u"k"), host::lastRegistryAccess()}};
        const std::uint32_t masks[] = {0xF003F, 0x20019, 0x2001F, 0x20019, 0x20006};
        for (std::size_t i = 0; i < std::size(masks); ++i)
            EXPECT_EQ(asked[i], std::pair(true, masks[i] | viewFlags[view]));
    }
}

TEST_F(RegistryHiveTest, DeletesInTheViewWhereTheSystemCan) {
    for (const bool exported : {true, false}) {
        host::putKey(u"HKEY_LOCAL_MACHINE\\Software\\Key");
        host::putKey(u"HKEY_LOCAL_MACHINE\\Software\\Wow6432Node\\Key");
        host::exportDeleteKeyEx(exported);
        RegistryKey key;
        key.setView(RegistryView::Bits32);
        EXPECT_TRUE(key.deleteKey(RegistryRoot::LocalMachine, u"Software\\Key"));
        EXPECT_EQ(key.exists(RegistryRoot::LocalMachine, u"Software\\Key"), !exported);
        key.setView(RegistryView::Bits64);
        EXPECT_EQ(key.exists(RegistryRoot::LocalMachine, u"Software\\Key"), exported);
    }
}

TEST_F(RegistryHiveTest, TextThatChangesWhileItIsRead) {
    RegistryKey key;
    ASSERT_TRUE(key.create(kUser, u"k"));
    const auto readWhile = [&](const std::u16string& before, const std::u16string& after) {
        key.writeString(u"v", before);
        host::afterSizeQuery([&key, after] { key.writeString(u"v", after); });
        return key.readString(u"v");
    };
    EXPECT_EQ(readWhile(u"a longer text", u"short"), u"short");
    EXPECT_EQ(outcome([&] { readWhile(u"short", u"a longer text"); }), "failed");
}

TEST_F(RegistryHiveTest, ReportsFailingCalls) {
    RegistryKey key;
    host::putKey(u"HKEY_CURRENT_USER\\k\\below");
    ASSERT_TRUE(key.create(kUser, u"k"));
    key.writeExpandableString(u"t", u"%PATH%");
    key.writeDword(u"n", 1);
    const auto readText = [&] { return outcome([&] { return key.readString(u"t"); }); };
    const struct Case {
        const char* function;
        std::uint32_t nth;
        const char* result;
        std::function<std::string()> action;
    } cases[] = {
        {"RegFlushKey", 1, "0", [&] { return outcome([&] { return key.flush(); }); }},
        {"RegQueryValueExW", 1, "0", [&] { return outcome([&] { return key.valueExists(u"t"); }); }},
        {"RegQueryValueExW", 1, "not found", readText},  // type
        {"RegQueryValueExW", 2, "not found", readText},  // size
        {"RegQueryValueExW", 3, "failed", readText},     // data
        {"RegQueryValueExW", 2, "failed", [&] { return outcome([&] { return key.readDword(u"n"); }); }},
        {"RegSetValueExW", 1, "failed", [&] { return outcome([&] { key.writeDword(u"n", 2); }); }},
        {"RegQueryInfoKeyW", 1, "failed", [&] { return outcome([&] { return key.subkeyCount(); }); }},
        {"RegEnumKeyExW", 1, "failed", [&] { return outcome([&] { return key.subkeyName(0); }); }},
        {"RegEnumValueW", 1, "failed", [&] { return outcome([&] { return key.valueName(0); }); }},
        {"ExpandEnvironmentStringsW", 1, "%PATH%",
         [&] { return outcome([&] { return key.readExpandedString(u"t"); }); }},
    };
    const std::string before = host::dumpRegistry();
    for (const Case& row : cases) {
        SCOPED_TRACE(row.function);
        fault::arm(row.function, row.nth, platform::kErrorNotEnoughMemory);
        EXPECT_EQ(row.action(), row.result);
        EXPECT_TRUE(fault::fired());
        EXPECT_EQ(host::dumpRegistry(), before);
    }
    ASSERT_TRUE(key.create(kUser, u"k\\below"));
    fault::arm("RegCreateKeyExW", 1, platform::kErrorAccessDenied);
    EXPECT_FALSE(key.clear());
    EXPECT_EQ(key.state(), KeyAccessState::Closed) << "deleted and not made again";
}

}  // namespace
}  // namespace owlkit
