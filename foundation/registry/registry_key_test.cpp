#include "foundation/registry/registry_key.h"

#include <functional>

#include "testing/registry.h"

namespace owlkit {
namespace {

using namespace test;

using Operation = std::function<void(RegistryKey&)>;

TEST_F(RegistryTest, NamesOfRoots) {
    EXPECT_EQ(RegistryKey::rootName(RegistryRoot::CurrentConfig), u"HKKEY_CURRENT_CONFIG");
    EXPECT_EQ(RegistryKey::rootName(static_cast<RegistryRoot>(6)), u"");
}

TEST_F(RegistryTest, LengthOfPaths) {
    const std::function<bool(const std::u16string&)> operations[] = {
        [&](const auto& path) { return key.open(kUser, path, RegistryMode::ReadOnly); },
        [&](const auto& path) { return key.exists(kUser, path); },
        [&](const auto& path) { return key.isWritable(kUser, path); },
        [&](const auto& path) { return key.deleteKey(kUser, path); },
        [&](const auto& path) { return key.create(RegistryRoot::None, path); }};
    for (const auto& operation : operations) {
        EXPECT_FALSE(operation(std::u16string(254, u'x')));
        EXPECT_EQ(outcome([&] { operation(std::u16string(255, u'x')); }), "invalid argument");
    }
    EXPECT_EQ(RegistryKey::readDwordOr(kUser, std::u16string(255, u'x'), u"v", -7), -7) << "throws nothing";
    EXPECT_EQ(key.path(), kTestPath) << "what fails leaves the open key as it is";
    key.writeDword(u"still", 1);
    EXPECT_EQ(outcome([&] { return key.create(kUser, u""); }), "invalid argument");
    EXPECT_TRUE(key.open(kUser, u"", RegistryMode::ReadOnly));
    EXPECT_FALSE(key.open(RegistryRoot::None, u"", RegistryMode::ReadOnly));
}

// The platform would take what stands before the zero: another key, another value.
TEST_F(RegistryTest, NamesWithAZeroInsideAreRefused) {
    const std::u16string path = kTestPath + std::u16string(u"\0x", 2);
    const std::u16string name(u"v\0x", 3);
    key.writeDword(u"v", 1);
    const std::pair<const char*, std::function<std::string()>> cases[] = {
        {"0", [&] { return outcome([&] { return key.open(kUser, path, RegistryMode::ReadWrite); }); }},
        {"0", [&] { return outcome([&] { return key.exists(kUser, path); }); }},
        {"0", [&] { return outcome([&] { return key.isWritable(kUser, path); }); }},
        {"0", [&] { return outcome([&] { return key.create(kUser, path); }); }},
        {"0", [&] { return outcome([&] { return key.deleteKey(kUser, path); }); }},
        {"0", [&] { return outcome([&] { return key.valueExists(name); }); }},
        {"not found", [&] { return outcome([&] { return key.valueSize(name); }); }},
        {"not found", [&] { return outcome([&] { return key.readDword(name); }); }},
        {"failed", [&] { return outcome([&] { key.writeDword(name, 2); }); }},
        {"0", [&] { return outcome([&] { return key.deleteValue(name); }); }},
    };
    int row = 0;
    for (const auto& [result, operation] : cases) {
        SCOPED_TRACE(row++);
        EXPECT_EQ(operation(), result);
        EXPECT_EQ(key.path(), kTestPath);
        EXPECT_EQ(outcome([&] { return key.readDword(u"v"); }), "1");
    }
    const auto plain = platform::deleteKey(platform::predefinedKey(platform::kHkeyCurrentUser), path);
    EXPECT_EQ(plain, platform::kErrorInvalidName);
}

TEST_F(RegistryTest, OperationsAskForTheRightState) {
    RegistryKey closed;
    RegistryKey readOnly;
    ASSERT_TRUE(readOnly.open(kUser, kTestPath, RegistryMode::ReadOnly));
    const std::u16string tooLong(9000, u'x');
    const Operation changes[] = {[](RegistryKey& k) { static_cast<void>(k.clear()); },
                                 [](RegistryKey& k) { static_cast<void>(k.flush()); },
                                 [](RegistryKey& k) { static_cast<void>(k.deleteValue(u"n")); },
                                 [](RegistryKey& k) { k.writeDword(u"n", 2); },
                                 [&](RegistryKey& k) { k.writeString(u"n", tooLong); },
                                 [&](RegistryKey& k) { k.writeMultiString(u"n", {tooLong}); },
                                 [](RegistryKey& k) { k.writeBinary(u"n", nullptr, 5); }};
    for (const Operation& change : changes) {
        EXPECT_EQ(outcome([&] { change(closed); }), "invalid state");
        EXPECT_EQ(outcome([&] { change(readOnly); }), "read-only error");
    }
    EXPECT_EQ(outcome([&] { closed.valueExists(u"n"); }), "invalid state");
    EXPECT_EQ(outcome([&] { closed.readBinary(u"n", nullptr, 0); }), "invalid state");
    EXPECT_EQ(outcome([&] { closed.subkeyName(-1); }), "invalid state");
    EXPECT_EQ(key.valueCount(), 0);
}

TEST_F(RegistryTest, MovesAndSwapsExchangeKeysButNotViews) {
    RegistryKey other;
    other.setView(RegistryView::Bits64);
    other.swap(key);
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
    EXPECT_EQ(key.root(), RegistryRoot::None);
    EXPECT_EQ(key.view(), RegistryView::Default);
    EXPECT_EQ(other.path(), kTestPath);
    EXPECT_EQ(other.view(), RegistryView::Bits64);
    other.setView(RegistryView::Bits64);
    key = std::move(other);
    EXPECT_TRUE(key.flush());
    key.setView(RegistryView::Bits64);
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
}

TEST_F(RegistryTest, DeletesAndClearsKeysWithoutSubkeys) {
    const std::u16string below = kTestPath + u"\\Below";
    ASSERT_TRUE(key.create(kUser, below));
    EXPECT_FALSE(key.deleteKey(kUser, kTestPath));
    EXPECT_TRUE(key.deleteKey(kUser, kTestPath + u"\\BELOW"));
    EXPECT_EQ(key.state(), KeyAccessState::ReadWrite) << "another spelling is another path";
    ASSERT_TRUE(key.create(kUser, below));
    EXPECT_TRUE(key.exists(kUser, below));
    EXPECT_TRUE(key.isWritable(kUser, below));
    EXPECT_TRUE(key.deleteKey(key.root(), key.path()));
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
    EXPECT_FALSE(key.exists(kUser, below));
    EXPECT_FALSE(key.deleteKey(kUser, below));
    ASSERT_TRUE(key.create(kUser, kTestPath));
    key.writeDword(u"gone", 1);
    EXPECT_TRUE(key.clear());
    EXPECT_EQ(key.valueCount(), 0);
    ASSERT_TRUE(RegistryKey::writeDword(kUser, below, u"", 1));
    EXPECT_FALSE(key.clear());
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
}

TEST_F(RegistryTest, ListsSubkeysAndValues) {
    for (const char16_t* name : {u"\\b", u"\\A", u"\\c"})
        ASSERT_TRUE(RegistryKey::writeDword(kUser, kTestPath + name, u"", 1));
    const std::u16string longest(254, u'v');
    key.writeDword(u"Kept Case", 1);
    key.writeDword(longest, 2);
    ASSERT_EQ(key.subkeyCount(), 3);
    EXPECT_EQ(key.subkeyName(0) + key.subkeyName(1) + key.subkeyName(2), u"Abc");
    EXPECT_EQ(key.valueName(0) + key.valueName(1), u"Kept Case" + longest);
    for (const std::int32_t index : {-1, 3}) {
        EXPECT_EQ(outcome([&] { key.subkeyName(index); }), "invalid index");
        EXPECT_EQ(outcome([&] { key.valueName(index); }), "invalid index");
    }
    EXPECT_TRUE(key.deleteValue(u"KEPT CASE"));
    EXPECT_FALSE(key.deleteValue(u"KEPT CASE"));
    key.writeDword(longest + u"v", 3);
    EXPECT_EQ(outcome([&] { key.valueName(1); }), "failed");
}

TEST_F(RegistryTest, HelpersMakeKeysForWritesAndTypesOnly) {
    const std::u16string path = kTestPath + u"\\deep\\er";
    EXPECT_EQ(RegistryKey::readDwordOr(kUser, path, u"v", -7), -7);
    EXPECT_FALSE(RegistryKey::deleteValue(kUser, path, u"v"));
    EXPECT_FALSE(key.exists(kUser, path));
    EXPECT_EQ(outcome([&] { RegistryKey::valueType(kUser, path, u"v"); }), "not found");
    EXPECT_TRUE(key.exists(kUser, path));
    EXPECT_TRUE(RegistryKey::writeQword(kUser, path, u"v", 0x80000000));
    EXPECT_EQ(RegistryKey::readQwordOr(kUser, path, u"v", 0), 0x80000000);
    EXPECT_EQ(RegistryKey::readDwordOr(kUser, path, u"v", -7), -7) << "out of its range";
    EXPECT_TRUE(RegistryKey::deleteValue(kUser, path, u"v"));
    const std::vector<std::u16string> items = {u"a", u"", u"b"}, none = {u"none"};
    EXPECT_TRUE(RegistryKey::writeMultiString(kUser, path, u"m", items));
    EXPECT_EQ(RegistryKey::readMultiStringOr(kUser, path, u"m", none), items);
    EXPECT_EQ(RegistryKey::readMultiStringOr(kUser, path, u"v", none), none);
    EXPECT_TRUE(RegistryKey::writeExpandableString(kUser, path, u"e", u"%x"));
    EXPECT_EQ(RegistryKey::valueType(kUser, path, u"e"), RegistryValueType::ExpandableString);
    putRaw(platform::kRegBinary, "a", 1);
    EXPECT_EQ(RegistryKey::readMultiStringOr(kUser, kTestPath, u"v", none), none) << "a read that throws";
    EXPECT_FALSE(RegistryKey::writeDword(RegistryRoot::None, path, u"v", 1));
    EXPECT_FALSE(RegistryKey::writeMultiString(RegistryRoot::None, path, u"m", items));
    EXPECT_FALSE(RegistryKey::writeExpandableString(RegistryRoot::None, path, u"e", u"%x"));
}

}  // namespace
}  // namespace owlkit
