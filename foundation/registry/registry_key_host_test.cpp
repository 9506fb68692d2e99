#include <functional>

#include "foundation/registry/registry_key.h"
#include "testing/host.h"
#include "testing/registry.h"

namespace owlkit {
namespace {

using namespace test;
using RegistryHiveTest = HostTest;

TEST_F(RegistryHiveTest, AsksForTheRightsOfEachOperation) {
    const std::uint32_t viewFlags[] = {0, 0x200, 0x100, 0};  // the last view is none of ours
    for (std::uint32_t view = 0; view < 4; ++view) {
        SCOPED_TRACE(view);
        RegistryKey key;
        key.setView(static_cast<RegistryView>(view));
        const auto rights = [&](bool done) {
            return done ? host::lastRegistryAccess() - viewFlags[view] : 0;
        };
        EXPECT_EQ(rights(key.create(kUser, u"k")), 0xF003Fu);
        EXPECT_EQ(rights(key.open(kUser, u"k", RegistryMode::ReadOnly)), 0x20019u);
        EXPECT_EQ(rights(key.open(kUser, u"k", RegistryMode::ReadWrite)), 0x2001Fu);
        EXPECT_EQ(rights(key.exists(kUser, u"k")), 0x20019u);
        EXPECT_EQ(rights(key.isWritable(kUser, u"k")), 0x20006u);
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
    const std::string before = host::dumpRegistry();
    const auto failing = [&](const char* function, auto action, std::uint32_t nth = 1) {
        fault::arm(function, nth, platform::kErrorNotEnoughMemory);
        const std::string result = outcome(action);
        EXPECT_TRUE(fault::fired()) << function;
        EXPECT_EQ(host::dumpRegistry(), before) << function;
        return result;
    };
    const auto readText = [&] { return key.readString(u"t"); };
    EXPECT_EQ(failing("RegFlushKey", [&] { return key.flush(); }), "0");
    EXPECT_EQ(failing("RegQueryValueExW", [&] { return key.valueExists(u"t"); }), "0");
    EXPECT_EQ(failing("RegQueryValueExW", readText, 1), "not found");  // type
    EXPECT_EQ(failing("RegQueryValueExW", readText, 2), "not found");  // size
    EXPECT_EQ(failing("RegQueryValueExW", readText, 3), "failed");     // data
    EXPECT_EQ(failing(
                  "RegQueryValueExW", [&] { return key.readDword(u"n"); }, 2),
              "failed");
    EXPECT_EQ(failing("RegSetValueExW", [&] { key.writeDword(u"n", 2); }), "failed");
    EXPECT_EQ(failing("RegQueryInfoKeyW", [&] { return key.subkeyCount(); }), "failed");
    EXPECT_EQ(failing("RegEnumKeyExW", [&] { return key.subkeyName(0); }), "failed");
    EXPECT_EQ(failing("RegEnumValueW", [&] { return key.valueName(0); }), "failed");
    EXPECT_EQ(failing("ExpandEnvironmentStringsW", [&] { return key.readExpandedString(u"t"); }), "%PATH%");
    ASSERT_TRUE(key.create(kUser, u"k\\below"));
    fault::arm("RegCreateKeyExW", 1, platform::kErrorAccessDenied);
    EXPECT_FALSE(key.clear());
    EXPECT_EQ(key.state(), KeyAccessState::Closed) << "deleted and not made again";
}

}  // namespace
}  // namespace owlkit
